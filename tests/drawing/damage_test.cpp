// Records that lost what the library never takes from them.
#include "drawing/sheet_of.h"
#include "tests/drawing/stage.h"
#include "udo/class_names.h"
#include "udo/udo_class.h"

#include "uf_obj.h"
#include "ug_session.hxx"

namespace {

constexpr char kUnlinked[] =
    "Format ISO is linked to no drawing sheet: its record is damaged. Delete the record and place "
    "the format anew.";

class DamageTest : public Stage {
protected:
    DamageTest()
    {
        addFormat("A3");
        held = format();
    }
    // A part that holds such a record is not sound.
    ~DamageTest() override
    {
        const auto *formats = LumUg::UDOClass::GetClass(QelFmt::kFormatV1Classname);
        for (const UgUDO *record :
             LumUg::UDO::GetAllUgUDOsOfClass(UgSession::getWorkPart(), formats->GetClassId()))
            UgException::throwOnFailure(UF_OBJ_delete_object(record->getTag()));
    }

    // The place of the link stays and is empty.
    void emptySheetLink() const { held->SetDrawing(nullptr); }
    void removeSheetLink() const { held->removeLink(LumUg::kSheetLink, held->GetDrawing()); }

    boost::shared_ptr<TrFormatBase> held;
};

} // namespace

TEST_F(DamageTest, AFormatWithoutItsSheetIsNamedWhereverTheSheetIsAskedFor)
{
    const auto title = block("TITLE");
    emptySheetLink();
    EXPECT_EQ(textThrownBy([&] { sheetOf(*held); }), kUnlinked);
    EXPECT_EQ(textThrownBy([&] { TrDrawing::getDrawing(*title); }), kUnlinked);
    EXPECT_EQ(textThrownBy([&] { held->addBlock("NOTES"); }), kUnlinked);
    EXPECT_EQ(textThrownBy([&] { held->resize(size("A2")); }), kUnlinked);
}

TEST_F(DamageTest, ARecordThatNeverHadASheetIsToldAlike)
{
    const auto title = block("TITLE");
    removeSheetLink();
    EXPECT_EQ(textThrownBy([&] { sheetOf(*held); }), kUnlinked);
    EXPECT_EQ(textThrownBy([&] { TrDrawing::getDrawing(*title); }), kUnlinked);
}

// What is drawn for the record is put on the sheet that it is linked to.
TEST_F(DamageTest, NothingIsDrawnForAFormatWithoutItsSheet)
{
    held->removePattern();
    emptySheetLink();
    EXPECT_EQ(textThrownBy([&] { held->updatePattern(); }), kUnlinked);
}

TEST_F(DamageTest, ValuesOfAFormatWithoutItsSheetCanStillBeRead)
{
    set("TITLE", "NAME", "GEAR");
    const auto name = field("TITLE", "NAME");
    emptySheetLink();
    EXPECT_EQ(name->GetValue(), std::vector<std::string>{"GEAR"});
}

TEST_F(DamageTest, ADamagedFormatIsFoundOnNoSheetOnceThePartIsReopened)
{
    emptySheetLink();
    saveAndReopen();
    EXPECT_FALSE(drawing()->hasFormat());
}
