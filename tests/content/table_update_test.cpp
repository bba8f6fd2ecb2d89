// Tables against a new definition, and tables and rows of the older generations. The block is
// placed at (100, 50), the table at its point.
#include "tests/content/legacy_records.h"

#include "udo/class_names.h"
#include "udo/udo_class.h"
#include "uf_obj.h"

class TableUpdate : public BlockOnSheet {
protected:
    TrFieldDefV1 column(const std::string &id, double x, const EditField &more = {}) const
    {
        return fieldDef(id, [&](TrFieldDefV1 &def) {
            def.SetLocationX(x);
            def.SetMarginHeight(1.0);
            def.SetWidth(20.0);
            if (more) more(def);
        });
    }
    void placed()
    {
        hasTable(tableDef("REV", {column("REV", 0), column("TEXT", 20)}));
        place();
        for (const char *letter : {"A", "B"}) {
            const auto row = table()->AppendEntry();
            row->field("REV")->ModifyValue({letter});
            row->field("TEXT")->ModifyValue({std::string("text ") + letter});
        }
        table()->locate();
    }
    Lines columnsOf(std::size_t index) const
    {
        Lines ids;
        for (const auto &one : table()->entry(index)->getFields())
            ids.push_back(one->GetFieldDefName() + "=" + one->GetValue().front());
        return ids;
    }
};

TEST_F(TableUpdate, ColumnsFindTheirDefinitionByName)
{
    placed();
    Base::log::Recording recording{&QelFmt::info_log()};
    // Reordered, one gone, one new, one elsewhere.
    const TrTableDefV1 next =
        tableDef("REV", {column("TEXT", 30),
                         column("DATE", 50, [](auto &def) { def.SetDefaultString({"today"}); })});
    const tag_t gone = noteTag(*table()->entry(0)->field("REV"));
    table()->UpdateDefinition(next);
    EXPECT_EQ(columnsOf(0), (Lines{"TEXT=text A", "DATE=today"}));
    EXPECT_EQ(columnsOf(1), (Lines{"TEXT=text B", "DATE=today"}));
    EXPECT_EQ(UF_OBJ_ask_status(gone), UF_OBJ_DELETED);
    const auto row = table()->entry(1);
    EXPECT_EQ(row->field("TEXT")->GetDefinition().tag(), next.GetFieldDefinition("TEXT").tag());
    // The second row, 5.5 below the first: 50 - 5.5 + 1.
    EXPECT_EQ(noteAt(*row->field("TEXT")), (At{130, 45.5}));
    EXPECT_EQ(noteAt(*row->field("DATE")), (At{150, 45.5}));
    EXPECT_EQ(table()->GetDefinition()->tag(), next.tag());
    EXPECT_EQ(table()->GetTableDefName(), "REV");
    EXPECT_TRUE(recording.has("updating table REV"));
    EXPECT_TRUE(recording.has("updating entry definitions"));
    EXPECT_EQ(looseObjects(story.part()), 0u);
}

TEST_F(TableUpdate, NewDirectionTurnsTheTableRound)
{
    placed();
    table()->UpdateDefinition(tableDef("REV", {column("REV", 0), column("TEXT", 20)},
                                       [](TrTableDefV1 &def) { def.SetDirection(1); }));
    EXPECT_EQ(noteAt(*table()->entry(1)->field("TEXT")), (At{120, 56.5})); // 50 + 5.5 + 1
}

TEST_F(TableUpdate, EqualDefinitionChangesOnlyLinks)
{
    placed();
    const std::string listing = nxhost::listSheet(sheet);
    const TrTableDefV1 same = tableDef("REV", {column("REV", 0), column("TEXT", 20)});
    table()->UpdateDefinition(same);
    EXPECT_EQ(nxhost::listSheet(sheet), listing);
    EXPECT_EQ(table()->entry(0)->field("TEXT")->GetDefinition().tag(),
              same.GetFieldDefinition("TEXT").tag());
}

TEST_F(TableUpdate, KeptDefinitionOutlivesItsBlocksAndGoesWithTheNextOne)
{
    placed();
    const tag_t kept = table()->GetDefinition()->tag();
    table()->keepDefinition();
    block()->retainDefinition()->DeleteUDO();
    EXPECT_EQ(UF_OBJ_ask_status(kept), UF_OBJ_ALIVE);
    EXPECT_EQ(table()->GetDefinition()->GetId(), "REV");
    EXPECT_EQ(table()->entry(0)->field("TEXT")->GetDefinition().GetId(), "TEXT");
    EXPECT_EQ(table()->entryCount(), 2u); // the definition is a child, but no row

    table()->UpdateDefinition(tableDef("REV", {column("REV", 0), column("TEXT", 20)}));
    EXPECT_EQ(UF_OBJ_ask_status(kept), UF_OBJ_DELETED);
    EXPECT_EQ(columnsOf(1), (Lines{"REV=B", "TEXT=text B"}));
}

TEST_F(TableUpdate, RetainedDefinitionIsUnlinkedNotDeleted)
{
    placed();
    const auto def = table()->retainDefinition();
    EXPECT_EQ(def->GetId(), "REV");
    EXPECT_EQ(UF_OBJ_ask_status(def->tag()), UF_OBJ_ALIVE);
    EXPECT_TRUE(table()->GetDefinition()->IsNull());
    EXPECT_TRUE(table()->retainDefinition()->IsNull());
}

// --- the older generations ----------------------------------------------------------------------

class LegacyTable : public TableUpdate {
protected:
    ZemTableV1 old() const
    {
        ZemTableV1 table;
        table.SetDouble(0, 105.0);
        table.SetDouble(1, 57.0);
        table.SetString(0, "REV");
        return table;
    }
};

TEST_F(LegacyTable, IsReadNotEdited)
{
    ZemTableV1 table = old();
    const auto row = legacyEntry<ZemEntryV1>(
        "REV", 1, 1, {legacyField("REV", {"A"}), legacyField("TEXT", {"t"})});
    linkChild(table, row);
    EXPECT_EQ(table.GetTableDefName(), "REV");
    EXPECT_EQ(table.GetX(), 105.0);
    EXPECT_EQ(table.GetY(), 57.0);
    EXPECT_TRUE(table.GetDefinition()->IsNull());
    ASSERT_EQ(table.getEntries().size(), 1u);
    const auto read = table.getEntries()[0];
    EXPECT_EQ(read->GetHideEntry(), 1);
    EXPECT_EQ(read->GetDisplayMiddleBorder(), 1);
    EXPECT_EQ(read->GetEntryDefName(), "REV");
    EXPECT_EQ(read->getFields().size(), 2u);
    EXPECT_TRUE(read->getSymbols().empty());

    const TrTableDefV1 def = tableDef("REV", {});
    const auto changes = story.changesDuring([&] {
        table.SetX(1.0);
        table.SetY(1.0);
        table.SetTableDefName("x");
        table.SetDefinition(def);
        table.SetEntries({});
        table.AddEntry(read);
        table.RemoveEntry(read);
        EXPECT_FALSE(table.AppendEntry());
        EXPECT_FALSE(static_cast<TrTableBase &>(table).AppendEntry());
        read->SetHideEntry(0);
        read->SetDisplayMiddleBorder(0);
        read->SetEntryDefName("x");
        read->AddField(read->getFields()[0]);
        read->addSymbol(Point3(1, 1, 0));
        EXPECT_EQ(read->CreateField(), nullptr);
    });
    EXPECT_EQ(changes, Lines{});
}

TEST_F(LegacyTable, RowUpgradeKeepsFlagsFieldOrderAndValues)
{
    ZemEntryV1 old = legacyEntry<ZemEntryV1>(
        "REV", 1, 1, {legacyField("REV", {"A"}), legacyField("TEXT", {"t", "u"})});
    const tag_t note = noteTag(*old.getFields()[1]);
    const auto fresh = old.checkAndUpgrade();
    EXPECT_EQ(LumUg::GetUDOClassName(fresh->GetUdoObject()), QelFmt::kEntryV2Classname);
    EXPECT_EQ(fresh->GetEntryDefName(), "REV");
    EXPECT_EQ(fresh->GetHideEntry(), 1);
    EXPECT_EQ(fresh->GetDisplayMiddleBorder(), 1);
    ASSERT_EQ(fresh->getFields().size(), 2u);
    EXPECT_EQ(fresh->getFields()[0]->GetFieldDefName(), "REV");
    EXPECT_EQ(fresh->getFields()[1]->GetValue(), (Lines{"t", "u"}));
    EXPECT_EQ(noteTag(*fresh->getFields()[1]), note);
    EXPECT_NE(dynamic_cast<TrFieldV1 *>(fresh->getFields()[1].get()), nullptr);
    EXPECT_TRUE(old.getFields().empty());
    old.DeleteUDO();
    EXPECT_EQ(fresh->getFields()[1]->GetValue(), (Lines{"t", "u"}));
}

TEST_F(LegacyTable, HiddenRowIsOutOfSightWhenItIsUpgraded)
{
    for (const int hidden : {1, 0}) {
        ZemEntryV1 oldest = legacyEntry<ZemEntryV1>("REV", hidden, 0, {legacyField("REV", {"A"})});
        TrEntryV1 older = legacyEntry<TrEntryV1>("REV", hidden, 0, {legacyField("REV", {"A"})});
        const int expected = hidden != 0 ? UF_OBJ_BLANKED : UF_OBJ_NOT_BLANKED;
        for (TrEntryBase *old : std::vector<TrEntryBase *>{&oldest, &older}) {
            const auto one = old->checkAndUpgrade()->getFields().at(0);
            EXPECT_EQ(shown(noteTag(*one)).blank_status, expected);
            ASSERT_EQ(borderTags(*one).size(), 2u);
            for (const tag_t line : borderTags(*one)) EXPECT_EQ(shown(line).blank_status, expected);
        }
    }
}

TEST_F(LegacyTable, RowBeforeSymbolsIsUpgradedToo)
{
    TrEntryV1 old = legacyEntry<TrEntryV1>("REV", 0, 1, {legacyField("REV", {"A"})});
    const auto fresh = old.checkAndUpgrade();
    EXPECT_EQ(LumUg::GetUDOClassName(fresh->GetUdoObject()), QelFmt::kEntryV2Classname);
    EXPECT_EQ(fresh->GetDisplayMiddleBorder(), 1);
    const auto again = fresh->checkAndUpgrade();
    EXPECT_EQ(again->tag(), fresh->tag());
}

// The whole of an old block: a table of the old kind with a row of each generation.
TEST_F(LegacyTable, BlockUpgradeReachesRowsAndFieldsAndKeepsTheirOrder)
{
    ZemTableV1 table = old();
    const auto first = legacyEntry<ZemEntryV1>("REV", 0, 0, {legacyField("REV", {"A"})});
    TrEntryV2 second;
    second.SetDisplayMiddleBorder(0);
    linkChild(second, legacyField("REV", {"B"}));
    const auto third = legacyEntry<TrEntryV1>("REV", 0, 0, {legacyField("REV", {"C"})});
    for (const LumUg::UDO &row : {LumUg::UDO(first), LumUg::UDO(second), LumUg::UDO(third)})
        linkChild(table, row);
    ZemBlockV1 old;
    old.SetBlockDefName("TITLE");
    old.SetX(100.0);
    old.SetY(50.0);
    linkChild(old, table);

    const auto fresh = old.checkAndUpgrade();
    ASSERT_TRUE(fresh);
    ASSERT_EQ(fresh->getTables().size(), 1u);
    const auto upgraded = fresh->getTables()[0];
    EXPECT_EQ(LumUg::GetUDOClassName(upgraded->GetUdoObject()), QelFmt::kTableV1Classname);
    EXPECT_EQ(UF_OBJ_ask_status(table.tag()), UF_OBJ_DELETED);
    EXPECT_EQ(upgraded->GetTableDefName(), "REV");
    EXPECT_EQ(upgraded->GetX(), 105.0);
    EXPECT_EQ(upgraded->GetY(), 57.0);
    std::string letters;
    for (const auto &row : upgraded->getEntries()) {
        EXPECT_NE(dynamic_cast<TrEntryV2 *>(row.get()), nullptr);
        EXPECT_NE(dynamic_cast<TrFieldV1 *>(row->getFields().at(0).get()), nullptr);
        letters += row->getFields().at(0)->GetValue().front();
    }
    EXPECT_EQ(letters, "ABC");
    EXPECT_EQ(upgraded->getEntries()[1]->tag(), second.tag()); // was current already
    EXPECT_EQ(looseObjects(story.part()), 0u);

    const auto again = upgraded->checkAndUpgrade();
    EXPECT_EQ(again->tag(), upgraded->tag());
}

TEST_F(LegacyTable, DefinitionChangesHandsWithTheTable)
{
    ZemTableV1 linked = old();
    const TrTableDefV1 def = tableDef("REV", {});
    UF_UDOBJ_link_t link{4, def.tag(), 0};
    UF_UDOBJ_add_links(linked.tag(), 1, &link);
    EXPECT_EQ(linked.upgrade()->GetDefinition()->tag(), def.tag());

    ZemTableV1 owning = old();
    const TrTableDefV1 own = tableDef("REV", {});
    linkChild(owning, own);
    const auto fresh = owning.upgrade();
    owning.DeleteUDO();
    EXPECT_EQ(UF_OBJ_ask_status(own.tag()), UF_OBJ_ALIVE);
    EXPECT_EQ(fresh->GetDefinition()->tag(), own.tag());
}
