// Rows of a table: appended, stacked, moved, hidden, taken away.
#include "tests/content/table_rows.h"

#include "udo/class_names.h"
#include "udo/udo_class.h"
#include "uf_obj.h"

TEST_F(TableRows, NewRowIsOfTheCurrentGenerationNamedAndFilled)
{
    revisions();
    const auto row = table()->AppendEntry();
    EXPECT_EQ(LumUg::GetUDOClassName(row->GetUdoObject()), QelFmt::kEntryV2Classname);
    EXPECT_EQ(row->GetEntryDefName(), "REV");
    EXPECT_EQ(row->GetInts(), (std::vector<int>{0, 0})); // both flags stored, not only absent
    EXPECT_EQ(row->GetDisplayMiddleBorder(), 0);
    EXPECT_EQ(row->GetHideEntry(), 0);
    ASSERT_EQ(row->getFields().size(), 2u);
    EXPECT_EQ(row->getFields()[0]->GetFieldDefName(), "REV");
    EXPECT_EQ(row->getFields()[1]->GetFieldDefName(), "TEXT");
    EXPECT_EQ(row->getFields()[0]->GetDefinition().tag(),
              table()->GetDefinition()->GetFieldDefinition("REV").tag());
    EXPECT_EQ(row->GetTable()->tag(), table()->tag());
    EXPECT_EQ(row->field("REV")->GetBlock()->tag(), block()->tag());
    EXPECT_FALSE(row->field("NONE"));
    EXPECT_EQ(table()->entryCount(), 1u);
    EXPECT_EQ(TrDrawing::getDrawing(*row->field("REV"))->drawingTag(), sheet);
}

TEST_F(TableRows, StackDownwardsByTheirHeightsForDirectionZero)
{
    revisions(0);
    append("A", {"one"});          // 5.5 high
    append("B", {"two", "lines"}); // 10.75
    append("C");                   // 5.5: the revision letter
    append("D");
    // Texts stand 1 above the base point of their row (site 7), whose y is 57 less the heights
    // above: 57, 51.5, 40.75, 35.25. X: 105 + 20, no margin.
    EXPECT_EQ(textPlaces(), (std::vector<At>{{125, 58}, {125, 52.5}, {125, 41.75}, {125, 36.25}}));
    EXPECT_EQ(noteAt(*table()->entry(1)->field("TEXT")), (At{125, 52.5}));
    saveAndReopen();
    EXPECT_EQ(noteAt(*table()->entry(1)->field("TEXT")), (At{125, 52.5}));
    EXPECT_EQ(revs(), "ABCD");
}

TEST_F(TableRows, StackUpwardsForAnyOtherDirection)
{
    revisions(1);
    append("A", {"one"});
    append("B", {"two", "lines"});
    append("C");
    // 57, 62.5, 73.25
    EXPECT_EQ(textPlaces(), (std::vector<At>{{125, 58}, {125, 63.5}, {125, 74.25}}));
}

TEST_F(TableRows, RowIsAsHighAsItsTallestField)
{
    revisions();
    append("A", {"two", "lines"});
    Base::log::Recording recording{&QelFmt::info_log()};
    EXPECT_DOUBLE_EQ(table()->entry(0)->CalcHeight(), 10.75);
    EXPECT_TRUE(recording.has("entry height = 10.75"));
    TrEntryV2 bare;
    bare.SetEntryDefName("REV");
    EXPECT_EQ(bare.CalcHeight(), 0.0);
}

TEST_F(TableRows, TellTheirPlaceToTheInformationLog)
{
    revisions();
    append("A", {"one"});
    append("B");
    Base::log::Recording recording{&QelFmt::info_log()};
    table()->locate();
    EXPECT_TRUE(recording.has("Entry 0 base Y location = 57"));
    EXPECT_TRUE(recording.has("Entry 1 base Y location = 51.5"));
}

TEST_F(TableRows, FollowTheirBlock)
{
    revisions();
    append("A", {"one"});
    append("B");
    const double to[2] = {200.0, 150.0};
    block()->locateBlock(to);
    EXPECT_EQ(textPlaces(), (std::vector<At>{{225, 158}, {225, 152.5}}));
    EXPECT_EQ(table()->GetX(), 205.0);
    EXPECT_EQ(table()->GetY(), 157.0);
    block()->move(nullptr);
    EXPECT_EQ(noteAt(*table()->entry(0)->field("TEXT")), (At{225, 158}));
}

// --- a value that changes its row's height ------------------------------------------------------

TEST_F(TableRows, TallerValueMovesTheRowsAfterItAndOnlyThem)
{
    revisions();
    append("A", {"one"});
    append("B", {"two"});
    append("C", {"three"});
    set(*table()->entry(1), "TEXT", {"two", "lines", "now"}); // 2 + 3 x 3.5 + 2 x 1.75 = 16
    EXPECT_EQ(textPlaces(), (std::vector<At>{{125, 58}, {125, 52.5}, {125, 36.5}}));
    EXPECT_EQ(noteAt(*table()->entry(2)->field("TEXT")), (At{125, 36.5}));
    set(*table()->entry(1), "TEXT", {""}); // its letter still is a line of 3.5
    EXPECT_EQ(noteAt(*table()->entry(2)->field("TEXT")), (At{125, 47}));
}

TEST_F(TableRows, RestackingComputesNoValues)
{
    revisions(0, [](TrFieldDefV1 &def) {
        def.SetUseDefaultInitially(0); // computed on every move
        def.SetDefaultString({"x"});
    });
    append("A", {"one"});
    append("B", {"two"});
    set(*table()->entry(0), "TEXT", {"one", "taller"});
    EXPECT_EQ(table()->entry(1)->field("TEXT")->GetValue(), Lines{"two"});
    EXPECT_EQ(noteAt(*table()->entry(1)->field("TEXT")), (At{125, 47.25})); // 57 - 10.75 + 1
    table()->Move();
    EXPECT_EQ(table()->entry(1)->field("TEXT")->GetValue(), Lines{"x"});
}

// --- borders ------------------------------------------------------------------------------------

TEST_F(TableRows, BordersEncloseTheRowBelowItsBaseForDirectionZero)
{
    revisions(0, [](TrFieldDefV1 &def) {
        def.SetTopBorderPolicy(1);
        def.SetLeftBorderPolicy(1);
    });
    append("A", {"two", "lines"});
    const auto row = table()->entry(0);
    // 10.75 high: from 57 down to 46.25.
    EXPECT_EQ(strokes(*row->field("REV")),
              (std::vector<Stroke>{{{105, 57}, {105, 46.25}}, {{105, 57}, {125, 57}}}));
    EXPECT_EQ(strokes(*row->field("TEXT")),
              (std::vector<Stroke>{{{125, 57}, {125, 46.25}}, {{125, 57}, {145, 57}}}));
    append("B");
    const std::vector<tag_t> lines = borderTags(*table()->entry(1)->field("REV"));
    set(*table()->entry(0), "TEXT", {"one"});
    EXPECT_EQ(strokes(*table()->entry(0)->field("REV")).at(0), (Stroke{{105, 57}, {105, 51.5}}));
    EXPECT_EQ(strokes(*table()->entry(1)->field("REV")).at(0), (Stroke{{105, 51.5}, {105, 46}}));
    EXPECT_EQ(borderTags(*table()->entry(1)->field("REV")), lines);
    EXPECT_EQ(nxhost::zeroLengthRefusals(), 0u);
}

TEST_F(TableRows, BordersStandAboveTheBaseForTheOtherDirection)
{
    revisions(1, [](TrFieldDefV1 &def) { def.SetBottomBorderPolicy(1); });
    append("A");
    // 5.5 high. What is called the bottom is the side away from the base point: the upper one here.
    EXPECT_EQ(strokes(*table()->entry(0)->field("REV")),
              (std::vector<Stroke>{{{105, 62.5}, {125, 62.5}}}));
}

TEST_F(TableRows, MiddleBorderIsToggledFieldByField)
{
    revisions();
    append("A");
    const auto row = table()->entry(0);
    row->field("REV")->SetHasMiddleBorder(1);
    row->ToggleMiddleBorder();
    EXPECT_EQ(row->field("REV")->GetHasMiddleBorder(), 0);
    EXPECT_EQ(row->field("TEXT")->GetHasMiddleBorder(), 1);
    row->locate();
    // 57 to 51.5: the middle is 54.25.
    EXPECT_EQ(strokes(*row->field("TEXT")), (std::vector<Stroke>{{{125, 54.25}, {145, 54.25}}}));
}

TEST_F(TableRows, RemovedBordersAreReleased)
{
    revisions(0, [](TrFieldDefV1 &def) { def.SetTopBorderPolicy(1); });
    append("A", {"one"});
    const auto row = table()->entry(0);
    const tag_t line = borderTags(*row->field("REV")).at(0);
    row->RemoveFieldBorders();
    EXPECT_TRUE(row->field("REV")->GetBorders().empty());
    EXPECT_EQ(UF_OBJ_ask_status(line), UF_OBJ_ALIVE);
    EXPECT_NE(row->field("REV")->GetNote(), nullptr);
}

// --- order --------------------------------------------------------------------------------------

TEST_F(TableRows, MoveUpAndDownAndAreStackedAnew)
{
    revisions();
    append("A", {"one"});
    append("B", {"two", "lines"});
    append("C", {"three"});
    table()->MoveEntryUp(1);
    EXPECT_EQ(revs(), "BAC");
    EXPECT_EQ(textPlaces(), (std::vector<At>{{125, 58}, {125, 47.25}, {125, 41.75}}));
    table()->MoveEntryDown(1);
    EXPECT_EQ(revs(), "BCA");
    saveAndReopen();
    EXPECT_EQ(revs(), "BCA");
    EXPECT_TRUE(table()->moveEntry(2, 0));
    EXPECT_EQ(revs(), "ABC");
    EXPECT_TRUE(table()->moveEntry(0, 2));
    EXPECT_EQ(revs(), "BCA");
    EXPECT_FALSE(table()->moveEntry(0, 3));
    EXPECT_EQ(revs(), "BCA");
}

TEST_F(TableRows, FirstCannotMoveUpNorLastDownNorWhatIsNotThere)
{
    revisions();
    append("A");
    append("B");
    for (const int index : {0, -1, 2, 7})
        EXPECT_EQ(textThrownBy([&] { table()->MoveEntryUp(index); }),
                  "First entry cannot be moved up.")
            << index;
    for (const int index : {1, 2, -1})
        EXPECT_EQ(textThrownBy([&] { table()->MoveEntryDown(index); }),
                  "Last entry cannot moved down.")
            << index;
    EXPECT_EQ(revs(), "AB");
}

TEST_F(TableRows, OrderThatIsSetLeavesOthersBehindAndOtherChildrenLast)
{
    revisions();
    append("A");
    append("B");
    append("C");
    table()->keepDefinition(); // a child that is no row
    auto rows = table()->getEntries();
    table()->SetEntries({rows[2], rows[0]});
    EXPECT_EQ(revs(), "CA");
    EXPECT_EQ(UF_OBJ_ask_status(rows[1]->tag()), UF_OBJ_ALIVE);
    const auto links = table()->GetLinks(2);
    ASSERT_EQ(links.size(), 3u);
    EXPECT_EQ(links[2]->getTag(), table()->GetDefinition()->tag());
    table()->SetEntries({rows[0], rows[1], rows[2]}); // the one left behind comes back
    EXPECT_EQ(revs(), "ABC");
}

TEST_F(TableRows, RemovedRowGoesWithAllThatIsDrawnForIt)
{
    revisions(0, [](TrFieldDefV1 &def) { def.SetTopBorderPolicy(1); });
    append("A", {"one"});
    append("B", {"two"});
    append("C", {"three"});
    const auto row = table()->entry(1);
    const tag_t record = row->tag(), note = noteTag(*row->field("TEXT")),
                line = borderTags(*row->field("TEXT")).at(0);
    table()->RemoveEntry(row);
    for (const tag_t gone : {record, note, line})
        EXPECT_EQ(UF_OBJ_ask_status(gone), UF_OBJ_DELETED);
    EXPECT_EQ(revs(), "AC");
    EXPECT_EQ(table()->entryCount(), 2u);
    table()->locate();
    EXPECT_EQ(textPlaces(), (std::vector<At>{{125, 58}, {125, 52.5}}));
    EXPECT_EQ(looseObjects(story.part()), 0u);
}

TEST_F(TableRows, RowTakenOffLivesOn)
{
    revisions();
    append("A");
    const auto row = table()->entry(0);
    table()->removeAndRetainEntry(row);
    EXPECT_EQ(table()->entryCount(), 0u);
    EXPECT_EQ(UF_OBJ_ask_status(row->tag()), UF_OBJ_ALIVE);
    table()->AddEntry(row);
    EXPECT_EQ(revs(), "A");
}

// --- hidden -------------------------------------------------------------------------------------

TEST_F(TableRows, HiddenRowsTakeNoHeightAndAreOutOfSight)
{
    revisions(0, [](TrFieldDefV1 &def) { def.SetTopBorderPolicy(1); });
    append("A", {"one"});
    append("B", {"two", "lines"});
    append("C", {"three"});
    table()->HidePreviousEntries(2);
    // Both hidden rows stand where the next one does.
    EXPECT_EQ(textPlaces(), (std::vector<At>{{125, 58}, {125, 58}, {125, 58}}));
    const auto blanked = [&](std::size_t index) {
        const auto one = table()->entry(index)->field("TEXT");
        const int note = shown(noteTag(*one)).blank_status;
        EXPECT_EQ(shown(borderTags(*one).at(0)).blank_status, note);
        return note == UF_OBJ_BLANKED;
    };
    EXPECT_TRUE(blanked(0) && blanked(1));
    EXPECT_FALSE(blanked(2));
    saveAndReopen();
    EXPECT_TRUE(blanked(0));
    EXPECT_EQ(table()->entry(0)->GetHideEntry(), 1);
    EXPECT_EQ(table()->entry(0)->field("TEXT")->GetValue(), Lines{"one"});

    table()->entry(0)->SetHideEntry(0);
    table()->locate();
    EXPECT_FALSE(blanked(0));
    EXPECT_TRUE(blanked(1));
    EXPECT_EQ(textPlaces(), (std::vector<At>{{125, 58}, {125, 52.5}, {125, 52.5}}));
}

TEST_F(TableRows, NumberOfHiddenRowsIsClamped)
{
    revisions();
    append("A");
    append("B");
    table()->HidePreviousEntries(-3);
    EXPECT_EQ(table()->entry(0)->GetHideEntry(), 0);
    table()->HidePreviousEntries(99);
    EXPECT_EQ(table()->entry(0)->GetHideEntry() + table()->entry(1)->GetHideEntry(), 2);
    table()->HidePreviousEntries(0); // leaves the others as they are
    EXPECT_EQ(table()->entry(1)->GetHideEntry(), 1);
}

TEST_F(TableRows, ValueOfAHiddenRowStaysOutOfSight)
{
    revisions();
    append("A");
    table()->HidePreviousEntries(1);
    set(*table()->entry(0), "TEXT", {"new"});
    EXPECT_EQ(shown(noteTag(*table()->entry(0)->field("TEXT"))).blank_status, UF_OBJ_BLANKED);
}

TEST_F(TableRows, LinesDrawnForAHiddenRowAreOutOfSight)
{
    revisions(0, [](TrFieldDefV1 &def) {
        def.SetMarginHeight(0.0); // a row without text has no height, so no lines
        def.SetTopBorderPolicy(1);
    });
    const auto row = table()->AppendEntry();
    ASSERT_TRUE(row->field("TEXT")->GetBorders().empty());
    table()->HidePreviousEntries(1);
    const auto blanked = [&] {
        std::vector<int> all;
        for (const tag_t line : borderTags(*table()->entry(0)->field("TEXT")))
            all.push_back(shown(line).blank_status);
        return all;
    };
    set(*table()->entry(0), "TEXT", {"new"});
    EXPECT_EQ(blanked(), (std::vector<int>{UF_OBJ_BLANKED}));
    table()->entry(0)->ToggleMiddleBorder();
    table()->entry(0)->UpdateBorders();
    EXPECT_EQ(blanked(), (std::vector<int>{UF_OBJ_BLANKED, UF_OBJ_BLANKED}));
    table()->entry(0)->SetHideEntry(0);
    EXPECT_EQ(blanked(), (std::vector<int>{UF_OBJ_NOT_BLANKED, UF_OBJ_NOT_BLANKED}));
}

// --- refused ------------------------------------------------------------------------------------

TEST_F(TableRows, RowThatCannotBeMadeLeavesNothing)
{
    revisions(0, [](TrFieldDefV1 &def) { def.SetDefaultString({"x"}); });
    append("A", {"one"});
    const std::string before = nxhost::listSheet(sheet);
    struct Refusal {
        const char *call;
        unsigned nth;
    };
    for (const Refusal &refusal :
         {Refusal{"UF_DRF_create_note", 1}, Refusal{"UF_DRF_create_note", 2},
          Refusal{"UF_UDOBJ_add_links", 1}, Refusal{"UF_UDOBJ_add_links", 3},
          Refusal{"UF_DRF_set_origin", 1}}) {
        nxhost::failCall(refusal.call, 1155000, refusal.nth);
        EXPECT_EQ(codeThrownBy([&] { table()->AppendEntry(); }), 1155000)
            << refusal.call << " " << refusal.nth;
        EXPECT_EQ(table()->entryCount(), 1u) << refusal.call << " " << refusal.nth;
        EXPECT_EQ(nxhost::listSheet(sheet), before) << refusal.call << " " << refusal.nth;
        EXPECT_EQ(looseObjects(story.part()), 0u) << refusal.call << " " << refusal.nth;
    }
    append("B", {"two"});
    EXPECT_EQ(revs(), "AB");
    EXPECT_EQ(textPlaces(), (std::vector<At>{{125, 58}, {125, 52.5}}));
}

TEST_F(TableRows, RowThatTheCallbackRaisesAgainstStands)
{
    revisions();
    append("A", {"one"});
    TrTableBase::appendEntryCB() = [](const char *, const char *, const char *) {
        throw std::runtime_error("released drawings get no rows");
    };
    EXPECT_EQ(textThrownBy([&] { table()->AppendEntry(); }), "released drawings get no rows");
    TrTableBase::appendEntryCB() = nullptr;
    EXPECT_EQ(table()->entryCount(), 2u);
    saveAndReopen();
    EXPECT_EQ(table()->entryCount(), 2u);
}

TEST_F(TableRows, TableWithoutADefinitionGetsNoRows)
{
    revisions();
    append("A", {"one"});
    table()->retainDefinition();
    EXPECT_EQ(textThrownBy([&] { table()->AppendEntry(); }),
              "Table REV has no definition: bring the format up to date first");
    EXPECT_EQ(table()->entryCount(), 1u);
    TrTableV1 none;
    EXPECT_EQ(textThrownBy([&] { none.AppendEntry(); }),
              "Table has no definition: bring the format up to date first");
    EXPECT_TRUE(none.IsNull());
}

// --- announced ----------------------------------------------------------------------------------

TEST_F(TableRows, AppendedRowIsAnnouncedWhenItStands)
{
    revisions(0, [](TrFieldDefV1 &def) { def.SetDefaultString({"x"}); });
    Lines heard;
    TrTableBase::appendEntryCB() = [&](const char *format, const char *blockId,
                                       const char *tableId) {
        heard = {format, blockId, tableId};
        EXPECT_EQ(storedAt(*table()->entry(0)->field("TEXT")), (At{125, 58}));
    };
    table()->AppendEntry();
    EXPECT_EQ(heard, (Lines{"ISO", "TITLE", "REV"}));
    TrTableBase::appendEntryCB() = nullptr;
    heard.clear();
    table()->AppendEntry();
    EXPECT_TRUE(heard.empty());
}

TEST_F(TableRows, InformationNamesThePlaceAndTheDefinition)
{
    revisions();
    nxhost::takeInfoWindow();
    table()->InfoObject();
    const std::string text = nxhost::takeInfoWindow();
    EXPECT_EQ(text.find("X                       105\n"
                        "Y                       57\n"
                        "-----------------------------------------------\n"
                        "Definition Information\n"
                        "ID                      REV\n"),
              0u)
        << text;
}

TEST_F(TableRows, TableThatNobodyToldItsBlocksPlaceCannotBePlaced)
{
    revisions();
    append("A");
    TrTableV1 alone(table()->GetUdoObject());
    EXPECT_EQ(textThrownBy([&] { alone.locate(); }),
              "Table REV cannot be placed: nobody has told it where its block stands");
    TrEntryV2 row(table()->entry(0)->GetUdoObject());
    EXPECT_EQ(textThrownBy([&] { row.locate(); }),
              "A row of table REV cannot be placed: it was not taken from its table");
}
