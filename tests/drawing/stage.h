// A sheet with a catalog of definitions to work with, and questions about what stands on it.
#pragma once

#include "content/field.h"
#include "content/table.h"
#include "definitions/block_def.h"
#include "definitions/definition_file_manager.h"
#include "definitions/format_def.h"
#include "definitions/format_size.h"
#include "definitions/locations.h"
#include "drawing/block.h"
#include "drawing/drawing.h"
#include "drawing/format.h"
#include "foundation/log.h"
#include "tests/drawing/catalog.h"
#include "tests/drawing/patterns.h"
#include "tests/support/story.h"

#include <ostream>
#include <string>
#include <vector>

// A point of the sheet, to a millionth: printed and compared as a whole.
struct At {
    double x, y;
    friend bool operator==(const At &a, const At &b)
    {
        return std::abs(a.x - b.x) < 1e-6 && std::abs(a.y - b.y) < 1e-6;
    }
    friend std::ostream &operator<<(std::ostream &out, const At &at)
    {
        return out << '(' << at.x << ", " << at.y << ')';
    }
};

void expectSoundPart(bool leavesRecords = false); // of the work part: see Stage::expectSound

class Stage : public testing::Test {
protected:
    explicit Stage(Catalog definitions = isoCatalog());
    ~Stage() override;

    // The catalog as it is now becomes what is on disk.
    void reload() { catalog.load(story); }
    void saveAndReopen()
    {
        story.saveAndReopen();
        sheet = story.sheet(0);
    }

    // --- asking ---------------------------------------------------------------------------------
    boost::shared_ptr<TrDrawing> drawing() const { return TrDrawing::getDrawing(sheet); }
    boost::shared_ptr<TrFormatBase> format() const { return drawing()->format(); }
    boost::shared_ptr<TrFormatDefV1> formatDef(const std::string &id = "ISO") const;
    boost::shared_ptr<TrBlockDefV1> blockDef(const std::string &id) const;
    TrFormatSizeV1 size(const std::string &id, const std::string &formatId = "ISO") const;
    boost::shared_ptr<TrBlockBase> block(const std::string &id) const; // the first of that name
    boost::shared_ptr<TrFieldBase> field(const std::string &block, const std::string &id) const;

    std::vector<std::string> blockNames() const;
    std::vector<std::string> fieldNames(const std::string &block) const;
    At blockAt(const std::string &id) const;
    At noteAt(const std::string &block, const std::string &id) const; // the note itself
    tag_t note(const std::string &block, const std::string &id) const;
    std::string value(const std::string &block, const std::string &id) const; // first line
    std::vector<tag_t> patterns(const LumUg::UDO &owner) const;
    std::vector<std::string> patternNames(const LumUg::UDO &owner) const;
    At patternAt(tag_t pattern) const;

    // --- acting ---------------------------------------------------------------------------------
    void addFormat(const std::string &sizeId = "A3", const std::string &formatId = "ISO")
    {
        drawing()->addFormat(formatDef(formatId), size(sizeId, formatId));
    }
    void resize(const std::string &sizeId) { format()->resize(size(sizeId)); }
    void set(const std::string &block, const std::string &id, const std::string &value)
    {
        field(block, id)->ModifyValue({value});
    }

    // --- the part as a whole ----------------------------------------------------------------------
    std::size_t count(const char *className) const; // records of a class in the work part
    // Every child linked once, every record but formats a child, every owned object owned once, no dangling
    // link, nothing condemned.
    void expectSound() const { expectSoundPart(leavesRecords); }

    Story story;
    Catalog catalog;
    tag_t sheet = NULL_TAG;
    bool leavesRecords = false; // by what the test does, records are left that hang on nothing
};

// What `body` writes to the info log, a message each.
std::vector<std::string> infoLines(const std::function<void()> &body);
