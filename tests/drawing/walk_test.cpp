// A caller without a plan: whatever it does, in whatever order, the part stays sound.
#include "content/entry.h"
#include "definitions/field_def.h"
#include "tests/drawing/stage.h"

#include "uf_obj.h"

#include <random>

namespace {

class Walk : public Stage {
protected:
    void run(int steps, unsigned seed)
    {
        m_random.seed(seed);
        for (int i = 0; i < steps; ++i) {
            SCOPED_TRACE("step " + std::to_string(i));
            step();
            expectSound();
            if (HasFailure()) return;
        }
    }

private:
    int upTo(int n) { return std::uniform_int_distribution<int>(0, n - 1)(m_random); }
    std::string oneOf(const std::vector<std::string> &texts)
    {
        return texts[static_cast<std::size_t>(upTo(static_cast<int>(texts.size())))];
    }
    boost::shared_ptr<TrBlockBase> anyBlock()
    {
        const auto blocks = format()->getBlocks();
        if (blocks.empty()) return {};
        return blocks[static_cast<std::size_t>(upTo(static_cast<int>(blocks.size())))];
    }

    void step()
    {
        if (!drawing()->hasFormat()) {
            addFormat(oneOf({"A3", "A2", "TALL"}));
            return;
        }
        switch (upTo(12)) {
        case 0:
        case 1:
            add();
            break;
        case 2:
            free();
            break;
        case 3:
            named();
            break;
        case 4:
            resizeAny();
            break;
        case 5:
            type();
            break;
        case 6:
            append();
            break;
        case 7:
            remove();
            break;
        case 8:
            editDefinitions();
            break;
        case 9:
            drawing()->updateFormat();
            break;
        case 10:
            replaceOrDelete();
            break;
        case 11:
            reopen();
            break;
        }
    }

    // Only ISO has places for all blocks; a sheet that holds many is no better a test than one that
    // holds some.
    void add()
    {
        if (format()->getBlocks().size() > 8) return;
        if (format()->GetFormatDefName() == "ISO") format()->addBlock(oneOf({"NOTES", "REV"}));
    }
    void free()
    {
        if (const auto block = anyBlock()) {
            const double point[] = {double(upTo(400)), double(upTo(290))};
            upTo(2) ? block->locateBlock(point) : block->move(point);
        }
    }
    void named()
    {
        if (format()->GetFormatDefName() != "ISO") return;
        if (const auto block = anyBlock())
            block->locateBlock(QelFmt::LocationInfoType{
                oneOf({"left", "right", "corner", "nowhere"}), Point2(upTo(400), upTo(290))});
    }
    void resizeAny()
    {
        if (format()->GetFormatDefName() == "ISO") resize(oneOf({"A3", "A2", "TALL"}));
    }
    void type()
    {
        if (const auto block = anyBlock()) {
            const auto fields = block->getFields();
            if (fields.empty()) return;
            fields[static_cast<std::size_t>(upTo(static_cast<int>(fields.size())))]->ModifyValue(
                {oneOf({"", "a", "GEAR", "two words"})});
        }
    }
    void append()
    {
        for (const auto &block : format()->getBlocks()) {
            for (const auto &table : block->getTables()) {
                if (table->entryCount() < 4)
                    table->AppendEntry();
                else
                    table->RemoveEntry(table->entry(0));
            }
        }
    }
    void remove()
    {
        if (auto block = anyBlock()) format()->removeBlock(block);
    }
    void editDefinitions()
    {
        BlockDesc &block = catalog.block(oneOf({"TITLE", "NOTES", "REV"}));
        const std::string id = oneOf({"F1", "F2", "F3"});
        switch (upTo(4)) {
        case 0:
            block.fields.insert(block.fields.begin(), {id, 3, 4, {"new"}});
            break;
        case 1:
            if (block.fields.size() > 1) block.fields.pop_back();
            break;
        case 2:
            std::swap(block.fields.front(), block.fields.back());
            break;
        case 3:
            block.fields.front().x += 1;
            break;
        }
        reload();
    }
    // A block on PLAIN may lack a place there: it goes back to ISO before it is asked for one.
    void replaceOrDelete()
    {
        const bool iso = format()->GetFormatDefName() == "ISO";
        if (upTo(3) == 0)
            drawing()->removeFormat();
        else if (iso && upTo(2))
            drawing()->replaceFormat(formatDef("PLAIN"), size("A3", "PLAIN"));
        else
            drawing()->replaceFormat(formatDef("ISO"), size("A2"));
    }
    void reopen()
    {
        const std::string before = nxhost::listPart(story.part());
        saveAndReopen();
        EXPECT_EQ(nxhost::difference(before, nxhost::listPart(story.part())), "");
    }

    std::mt19937 m_random;
};

} // namespace

TEST_F(Walk, FourHundredSteps) { run(400, 1); }

TEST_F(Walk, TwentyThousandStepsSoak)
{
    const int steps = static_cast<int>(20000 * soakShare());
    run(steps, 2);
}
