// A part that is damaged, and what a salvage makes of it.
#pragma once

#include "store_support.h"

#include "nxhost/control.h"
#include "store/salvage.h"
#include "uf_part.h"

#include <algorithm>
#include <regex>
#include <set>
#include <string>
#include <vector>

using namespace store_test;
using Kind = host::store::Finding::Kind;

class SalvagedPart : public testing::Test {
protected:
    SalvagedPart() { make(60); }
    ~SalvagedPart() override { nxhost::reset(); }

    void make(int objects)
    {
        store::writeImage(samplePart(path, objects), path);
        sound = bytesOf(path);
        soundLines = linesOf(listing(*Session::get().parts().back()));
        nxhost::reset();
    }
    // A line of the listing by ordinal; 0 is the part's own.
    using Lines = std::map<int, std::string>;
    static Lines linesOf(const std::string &text)
    {
        Lines lines;
        std::istringstream in(text);
        static const std::regex object("^#(\\d+) (\\w+) .*");
        int ordinal = 0;
        for (std::string line; std::getline(in, line);) {
            std::smatch match; // a text may go over several lines
            if (std::regex_match(line, match, object)) ordinal = std::stoi(match[1]);
            lines[ordinal] += line + '\n';
        }
        return lines;
    }

    void damage(const std::string &sql, bool sealed = false)
    {
        putBytes(path, sound);
        Forge smith(path);
        smith.run(sql);
        if (sealed) smith.seal();
    }

    // What is left as lines. Without files: they take long to be synced.
    Lines salvage()
    {
        const store::Examination examined = store::examineImage(bytesOf(path), path);
        if (examined.image.empty()) throw store::StoreError{UF_PART_err_damaged, "nothing"};
        lost.clear();
        for (const store::Finding &finding : examined.findings)
            if (!finding.mended.empty()) lost.push_back(finding);
        store::LoadedPart loaded = store::loadImage(examined.image, rescued);
        Part &part = Session::get().adoptPart(std::move(loaded.part), std::move(loaded.objects));
        EXPECT_EQ(part.objects.size(), examined.objects);
        Lines lines = linesOf(listing(part));
        Session::get().closePart(part);
        return lines;
    }

    // The same with a new part in its file; everything around it is checked on the way.
    Lines salvageFile()
    {
        const std::string before = bytesOf(path);
        fs::remove(rescued);
        const store::Salvage result = store::salvage(path, rescued);
        lost = result.lost;
        EXPECT_EQ(bytesOf(path), before);
        Part &part = opened(rescued);
        EXPECT_EQ(part.objects.size(), result.objects);
        Lines lines = linesOf(listing(part));
        Session::get().closePart(part);
        expectUsable();
        return lines;
    }
    // It can be changed and saved like any other.
    void expectUsable()
    {
        Part &part = opened(rescued);
        newNote(part, {"after the salvage"});
        const std::string expected = listing(part);
        store::save(part, rescued);
        Session::get().closePart(part);
        Part &again = opened(rescued);
        EXPECT_EQ(listing(again), expected);
        Session::get().closePart(again);
    }

    // Objects whose rows are said to be lost.
    std::set<int> lostObjects() const
    {
        std::set<int> ordinals;
        for (const store::Finding &finding : lost)
            if (finding.object && finding.text.find(": its row is ") != std::string::npos)
                ordinals.insert(static_cast<int>(finding.object));
        return ordinals;
    }
    std::size_t count(Kind kind) const
    {
        return static_cast<std::size_t>(
            std::count_if(lost.begin(), lost.end(),
                          [&](const store::Finding &finding) { return finding.kind == kind; }));
    }
    bool said(const std::string &text) const
    {
        return std::any_of(lost.begin(), lost.end(), [&](const store::Finding &finding) {
            return (finding.text + "; " + finding.mended).find(text) != std::string::npos;
        });
    }
    std::string allSaid() const
    {
        std::string all;
        for (const store::Finding &finding : lost)
            all += finding.text + "; " + finding.mended + '\n';
        return all;
    }

    // How often a line names the object.
    static std::size_t mentions(const std::string &line, int ordinal)
    {
        const std::regex name("#" + std::to_string(ordinal) + "\\b");
        const auto n = std::distance(std::sregex_iterator(line.begin(), line.end(), name), {});
        return static_cast<std::size_t>(n);
    }

    Folder folder;
    std::string path = folder.file("damaged.prt");
    std::string rescued = folder.file("rescued.prt");
    std::string sound;
    Lines soundLines;
    std::vector<store::Finding> lost;
};
