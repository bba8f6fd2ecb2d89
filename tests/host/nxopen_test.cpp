#include "NXOpen/Annotations_SimpleDraftingAid.hxx"
#include "NXOpen/NXException.hxx"
#include "NXOpen/NXObjectManager.hxx"

#include "tests/host/drawing_host.h"

#include "ug_part.hxx"
#include "ug_session.hxx"

#include <cmath>
#include <type_traits>

namespace {

using NXOpen::NXException;
using NXOpen::NXObjectManager;
using NXOpen::Annotations::SimpleDraftingAid;
using NXOpen::Annotations::UserSymbolPreferences;

static_assert(std::is_base_of_v<std::exception, NXException>);
static_assert(UserSymbolPreferences::SizeTypeLengthHeight == 0 &&
              UserSymbolPreferences::SizeTypeScaleAspectRatio == 1);

class NewerInterface : public DrawingHost {
protected:
    static SimpleDraftingAid *aid(tag_t tag)
    {
        return dynamic_cast<SimpleDraftingAid *>(NXObjectManager::Get(tag));
    }
};

TEST_F(NewerInterface, ATagHasOneObjectAsLongAsItLives)
{
    const tag_t note = addNote({"a"});
    EXPECT_EQ(NXObjectManager::Get(note), NXObjectManager::Get(note));
    EXPECT_EQ(NXObjectManager::Get(note)->Tag(), note);
    EXPECT_EQ(NXObjectManager::Get(part())->Tag(), part());
    ASSERT_EQ(UF_OBJ_delete_object(note), 0);
    EXPECT_THROW(NXObjectManager::Get(note), NXException);
    EXPECT_THROW(NXObjectManager::Get(NULL_TAG), NXException);
}

TEST_F(NewerInterface, ANoteIsADraftingAidASymbolAndASheetAreNot)
{
    double origin[3] = {0, 0, 0};
    tag_t symbol = NULL_TAG;
    ASSERT_EQ(UF_DRF_create_id_symbol(UF_DRF_sym_circle, "1", "", origin, UF_DRF_without_leader,
                                      UF_DRF_leader_attach_screen, nullptr, origin, &symbol),
              0);
    EXPECT_TRUE(aid(addNote({"a"})));
    EXPECT_FALSE(aid(symbol));
    EXPECT_FALSE(aid(addSheet("A")));
}

TEST_F(NewerInterface, TheUserSymbolSizeIsKeptWithTheNote)
{
    SimpleDraftingAid *note = aid(addNote({"a"}));
    note->SetUserSymbolSize(UserSymbolPreferences::SizeTypeLengthHeight, 12.5, 6.25);
    UserSymbolPreferences::SizeType type = UserSymbolPreferences::SizeTypeScaleAspectRatio;
    double length = 0, height = 0;
    note->GetUserSymbolSize(&type, &length, &height);
    EXPECT_EQ(type, UserSymbolPreferences::SizeTypeLengthHeight);
    EXPECT_EQ(length, 12.5);
    EXPECT_EQ(height, 6.25);
    EXPECT_THROW(note->SetUserSymbolSize(UserSymbolPreferences::SizeTypeLengthHeight, 0.0, 6.25),
                 NXException);
    note->SetUserSymbolSize(UserSymbolPreferences::SizeTypeScaleAspectRatio, 2.0, 0.5);
    note->GetUserSymbolSize(&type, &length, &height);
    EXPECT_EQ(type, UserSymbolPreferences::SizeTypeScaleAspectRatio);
}

TEST_F(NewerInterface, ReferencesToAttributesAreResolvedWhenRead)
{
    UgPart *target = UgSession::getWorkPart();
    target->addStringAttribute("TITLE", "Shaft");
    const tag_t other = addNote({"x"});
    dynamic_cast<UgAttributableObject *>(UgObject::find(other))->addStringAttribute("REV", "C");
    const SimpleDraftingAid *note = aid(addNote({"a"}));
    const std::string tag = std::to_string(other);
    EXPECT_EQ(note->GetEvaluatedText("<W@TITLE>"), "Shaft");
    EXPECT_EQ(note->GetEvaluatedText("Rev <W!" + tag + "@REV> of <W@TITLE>"), "Rev C of Shaft");
    EXPECT_EQ(note->GetEvaluatedText("<W!" + tag + "@?REV>"), "C");
    EXPECT_EQ(note->GetEvaluatedText("<W@MISSING>"), "");
    EXPECT_EQ(note->GetEvaluatedText("<W!4000000000@REV>"), "<W!4000000000@REV>");
    EXPECT_EQ(note->GetEvaluatedText("<O>20"), "<O>20");
    target->setStringAttributeValue("TITLE", "Hub");
    EXPECT_EQ(note->GetEvaluatedText("<W@TITLE>"), "Hub");
}

TEST_F(NewerInterface, AFailureSaysItsCodeAndText)
{
    nxhost::failCall("SimpleDraftingAid::SetUserSymbolSize", 1175008);
    SimpleDraftingAid *note = aid(addNote({"a"}));
    try {
        note->SetUserSymbolSize(UserSymbolPreferences::SizeTypeLengthHeight, 1, 1);
        ADD_FAILURE();
    } catch (const std::exception &failure) {
        EXPECT_EQ(std::string(failure.what()), UgException(1175008).askErrorText());
        EXPECT_EQ(dynamic_cast<const NXException &>(failure).ErrorCode(), 1175008);
    }
}

TEST_F(NewerInterface, ADeadNoteRaises)
{
    const tag_t tag = addNote({"a"});
    SimpleDraftingAid *note = aid(tag);
    ASSERT_EQ(UF_OBJ_delete_object(tag), 0);
    EXPECT_THROW(note->GetEvaluatedText("a"), NXException);
}

} // namespace
