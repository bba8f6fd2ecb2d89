// Damaged parts as files: pages that are lost, interrupted saves, and looking without a salvage.
#include "store_forge.h"
#include "store_forgeries.h"
#include "store_processes.h"
#include "store_salvage.h"
#include "store_support.h"

#include "nxhost/control.h"
#include "store/salvage.h"
#include "uf_part.h"

#include <map>
#include <random>
#include <set>

#include <sys/resource.h>

// --- pages ------------------------------------------------------------------------------------------------

TEST_F(SalvagedPart, APartWithoutItsFirstPageIsWhole)
{
    putBytes(path, std::string(4096, '\0') + sound.substr(4096));
    EXPECT_EQ(salvageFile(), soundLines);
    EXPECT_TRUE(lostObjects().empty());
}

// Big enough for trees of several levels: each page in turn is gone.
TEST_F(SalvagedPart, AMissingPageLosesWhatStoodOnItAndThatIsNamedOrCounted)
{
    make(2000);
    const std::size_t pages = sound.size() / 4096;
    ASSERT_GT(pages, 60u);
    std::size_t mostLost = 0;
    for (std::size_t page = 1; page < pages; page += page < 6 ? 1 : 3) {
        SCOPED_TRACE(page + 1);
        std::string bytes = sound;
        bytes.replace(page * 4096, 4096, std::string(4096, '\0'));
        putBytes(path, bytes);
        const Lines after = salvage();
        std::size_t gone = 0;
        const std::set<int> named = lostObjects();
        for (const auto &[ordinal, line] : soundLines)
            gone += ordinal > 0 && (!after.count(ordinal) || named.count(ordinal)) ? 1 : 0;
        mostLost = std::max(mostLost, gone);
        std::size_t counted = named.size();
        std::smatch match;
        const std::string all = allSaid();
        if (std::regex_search(all, match, std::regex("table object: (\\d+) more row")))
            counted += static_cast<std::size_t>(std::stoi(match[1]));
        EXPECT_EQ(counted, gone) << all;
        for (const int ordinal : named)
            EXPECT_TRUE(soundLines.count(ordinal)) << ordinal << " was never there";
    }
    EXPECT_GT(mostLost, 5u);
    EXPECT_LT(mostLost, 120u) << "the pages below a lost one are found";
}

TEST_F(SalvagedPart, ATruncatedPartGivesWhatIsLeft)
{
    make(400);
    std::size_t before = soundLines.size();
    int rescuedParts = 0;
    for (std::size_t size = sound.size(); size > 97 * 29; size -= 97 * 29) {
        SCOPED_TRACE(size);
        putBytes(path, sound.substr(0, size));
        try {
            const Lines after = salvage();
            ++rescuedParts;
            for (const auto &[ordinal, line] : after)
                EXPECT_TRUE(soundLines.count(ordinal) ||
                            said("object " + std::to_string(ordinal)) || line.find("fonts") < 8)
                    << line;
            EXPECT_LE(after.size(), before + 1); // less and less, but for sheets made again
            before = std::min(before, after.size());
            EXPECT_EQ(lost.empty(), size == sound.size());
        } catch (const store::StoreError &error) {
            EXPECT_LT(size, 3 * 4096u) << error.message;
        }
    }
    EXPECT_GT(rescuedParts, 20);
}

namespace {

// Nothing but a part that opens, or a refusal.
void expectPartOrRefusal(const std::string &bytes)
{
    try {
        const store::Examination examined = store::examineImage(bytes, "damaged.prt");
        if (!examined.image.empty()) store::loadImage(examined.image, "rescued.prt");
    } catch (const store::StoreError &error) {
        EXPECT_EQ(error.message.rfind("damaged.prt: ", 0), 0u) << error.message;
    }
}

} // namespace

TEST_F(SalvagedPart, AFlippedBitAnywhereNeverBringsTheSalvageDown)
{
    for (std::size_t at = 0; at < sound.size(); at += 11) {
        SCOPED_TRACE(at);
        std::string bytes = sound;
        bytes[at] = static_cast<char>(bytes[at] ^ (1 << at % 8));
        expectPartOrRefusal(bytes);
        if (HasFailure()) return;
    }
}

TEST_F(SalvagedPart, ScrambledPagesNeverBringTheSalvageDownSoak)
{
    std::mt19937 random(5);
    const int rounds = static_cast<int>(6000 * std::max(0.02, soakShare()));
    for (int round = 0; round < rounds; ++round) {
        SCOPED_TRACE(round);
        std::string bytes = sound;
        for (unsigned n = 1 + random() % 40; n; --n) {
            const std::size_t at = random() % bytes.size();
            const std::size_t size = std::min<std::size_t>(1 + random() % 64, bytes.size() - at);
            if (random() % 2)
                bytes.replace(at, size, bytes.substr(random() % (bytes.size() - size), size));
            else
                bytes[at] = static_cast<char>(random());
        }
        expectPartOrRefusal(bytes);
        if (HasFailure()) return;
    }
}

// --- files --------------------------------------------------------------------------------------------------

TEST_F(SalvagedPart, ASaveThatWasCutOffIsUndoneInTheNewPartAlone)
{
    // A journal that says how the first pages were, beside a file that has new ones.
    {
        Part &part = opened(path);
        Session::get().closePart(part);
    }
    const pid_t child = ::fork();
    if (child == 0) {
        sqlite3 *database = nullptr;
        sqlite3_open(path.c_str(), &database);
        sqlite3_exec(database,
                     "PRAGMA cache_spill=1;PRAGMA cache_size=2;BEGIN;"
                     "UPDATE object SET name=name||'cut off'",
                     nullptr, nullptr, nullptr);
        ::_exit(0); // in the middle of it
    }
    statusOf(child);
    ASSERT_TRUE(fs::exists(path + "-journal"));
    const std::string journal = bytesOf(path + "-journal");
    EXPECT_EQ(salvageFile(), soundLines);
    EXPECT_TRUE(lost.empty()) << allSaid();
    EXPECT_EQ(bytesOf(path + "-journal"), journal);
}

TEST_F(SalvagedPart, WhatIsNoPartOrMissingOrTakenIsRefused)
{
    const auto code = [&](const std::string &from, const std::string &to) {
        try {
            store::salvage(from, to);
            return 0;
        } catch (const store::StoreError &error) {
            EXPECT_NE(error.message.find(".prt: "), std::string::npos) << error.message;
            return error.code;
        }
    };
    EXPECT_EQ(code(folder.file("none.prt"), rescued), UF_PART_err_file_not_found);
    EXPECT_EQ(code(path, path), UF_PART_err_file_exists);
    putBytes(folder.file("letter.prt"), std::string(9000, 'x'));
    EXPECT_EQ(code(folder.file("letter.prt"), rescued), UF_PART_err_not_a_part);
    putBytes(folder.file("empty.prt"), "");
    EXPECT_EQ(code(folder.file("empty.prt"), rescued), UF_PART_err_not_a_part);
    putBytes(folder.file("shell.prt"), sound.substr(0, 4096));
    EXPECT_EQ(code(folder.file("shell.prt"), rescued), UF_PART_err_damaged);
    Forge(path).run("PRAGMA user_version=2");
    EXPECT_EQ(code(path, rescued), UF_PART_err_newer_version);
    EXPECT_FALSE(fs::exists(rescued));
}

TEST_F(SalvagedPart, APartThatIsBeingSavedIsNotLookedAt)
{
    const LockingProcess holder(path, "BEGIN EXCLUSIVE");
    try {
        store::examine(path);
        ADD_FAILURE() << "was looked at";
    } catch (const store::StoreError &error) {
        EXPECT_EQ(error.code, UF_PART_err_locked);
        EXPECT_NE(error.message.find(std::to_string(holder.id())), std::string::npos);
    }
}

TEST_F(SalvagedPart, SalvageTakesNoMoreMemoryThanTwentyTimesTheFile)
{
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer reserves memory of its own";
#endif
    make(4000);
    const pid_t child = ::fork();
    if (child == 0) {
        std::size_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        const rlimit limit{pages * static_cast<rlim_t>(::getpagesize()) + 20 * sound.size(),
                           RLIM_INFINITY};
        ::setrlimit(RLIMIT_AS, &limit);
        try {
            for (std::size_t at = 0; at < sound.size(); at += sound.size() / 20) {
                std::string bytes = sound;
                bytes[at] = static_cast<char>(bytes[at] ^ 0x40);
                store::examineImage(bytes, "damaged.prt");
            }
        } catch (...) {
            ::_exit(1);
        }
        ::_exit(0);
    }
    EXPECT_EQ(statusOf(child), 0);
}

// --- looking only ---------------------------------------------------------------------------------------------

namespace {

std::vector<std::string> textsOf(const store::Examination &examined, Kind kind)
{
    std::vector<std::string> texts;
    for (const store::Finding &finding : examined.findings)
        if (finding.kind == kind) texts.push_back(finding.text);
    return texts;
}

} // namespace

TEST_F(SalvagedPart, CondemnedObjectsDeadReferencesAndOrphansAreFoundInASoundPart)
{
    Part &part = opened(path);
    Session &session = Session::get();
    const auto tagOf = [&](std::uint64_t ordinal) { return part.objects.at(ordinal)->tag; };
    session.remove(tagOf(16)); // the root holds it
    session.remove(tagOf(17)); // the point that the second note refers to
    newUdo(part, "ALONE");
    session.addLink(newUdo(part, "FORMAT"), 1, tagOf(9));
    session.addLink(newUdo(part, "FORMAT"), 1, tagOf(2));
    store::save(part, path);
    const store::Examination examined =
        store::examine(path, {{"SAMPLE_ODD", "SAMPLE_EVEN", "ALONE"}, {"FORMAT"}});
    EXPECT_EQ(examined.refusal, "");
    EXPECT_EQ(textsOf(examined, Kind::damage), std::vector<std::string>{});
    EXPECT_EQ(textsOf(examined, Kind::condemned),
              (std::vector<std::string>{"object 16 (UDO SAMPLE_ODD): it is deleted, but object 8 "
                                        "(UDO SAMPLE_ROOT) still holds it by a link of type 2"}));
    EXPECT_EQ(textsOf(examined, Kind::dangling),
              (std::vector<std::string>{
                  "object 21 (note \"note 2\"): its text refers to an object that is gone"}));
    const auto orphans = textsOf(examined, Kind::orphan);
    ASSERT_EQ(orphans.size(), 2u);
    EXPECT_NE(orphans[0].find("(UDO ALONE): it belongs to no other record"), std::string::npos);
    EXPECT_NE(orphans[1].find("(UDO FORMAT): it stands on no sheet"), std::string::npos);
}

TEST_F(SalvagedPart, DamageThatOpeningOverlooksIsFoundByALook)
{
    // Deleted rows leave free pages; a flip there is never read.
    Part &part = opened(path);
    for (int i = 0; i < 40; ++i) newNote(part, {std::string(900, 'x')});
    store::save(part, path);
    for (int i = 0; i < 40; ++i) Session::get().remove(part.objects.rbegin()->second->tag);
    store::save(part, path);
    nxhost::reset();
    EXPECT_TRUE(store::examine(path).findings.empty());
    putByte(path, 39, 0x55); // how many pages are free
    const store::Examination examined = store::examine(path);
    EXPECT_FALSE(examined.findings.empty());
    EXPECT_EQ(examined.findings[0].kind, Kind::damage);
    EXPECT_NE(examined.findings[0].text.find("its pages: "), std::string::npos)
        << examined.findings[0].text;
}
