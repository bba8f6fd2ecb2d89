// Content that no part can have, made by SQL in a sample part and sealed again.
#pragma once

namespace store_test {

struct Forgery {
    const char *sql;
    const char *because; // what the refusal says
};

// Ordinals of the sample: 1 fonts, 2 to 7 sheets and their views, 8 the root UDO; then each round point,
// line, arc, area, note, symbol, pattern, child.
inline constexpr Forgery kForgeries[] = {
    {"UPDATE object SET kind='gear' WHERE ordinal=9", "its kind is unknown"},
    {"UPDATE object SET kind='line' WHERE ordinal=9", "numbers are missing"},
    {"UPDATE object SET kind='point' WHERE ordinal=10", "more numbers than"},
    {"UPDATE object SET status=4 WHERE ordinal=9", "its status is unknown"},
    {"UPDATE object SET status=0 WHERE ordinal=9", "its status is unknown"},
    {"UPDATE object SET layer=257 WHERE ordinal=9", "a layer is not 1 to 256"},
    {"UPDATE object SET layer=0 WHERE ordinal=9", "a layer is not 1 to 256"},
    {"UPDATE object SET color=5000000000 WHERE ordinal=9", "out of range"},
    {"UPDATE object SET color='red' WHERE ordinal=9", "not an integer"},
    {"UPDATE object SET numbers=CAST(numbers AS TEXT) WHERE ordinal=9", "not a blob"},
    {"UPDATE object SET texts='x' WHERE ordinal=9", "its kind does not know"},
    {"UPDATE object SET class='X' WHERE ordinal=9", "its kind does not know"},
    {"UPDATE object SET refers=1 WHERE ordinal=9", "its kind does not know"},
    {"UPDATE object SET ordinal=1000000 WHERE ordinal=9", "out of range"},
    {"UPDATE object SET ordinal=-9 WHERE ordinal=9", "out of range"},
    {"UPDATE object SET view=999 WHERE ordinal=9", "its view 999 is not there"},
    {"UPDATE object SET view=8 WHERE ordinal=9", "its view is no view"},
    {"UPDATE object SET owner=999 WHERE ordinal=9", "its owner 999 is not there"},
    {"UPDATE object SET owner=1 WHERE ordinal=9", "its owner is no UDO"},
    {"UPDATE object SET owner=8 WHERE ordinal=9", "do not agree"},
    {"UPDATE object SET owned='[9,9]' WHERE ordinal=8", "owned by another"},
    {"UPDATE object SET owned='[12,12]',owner=0 WHERE ordinal=16", "owned by another"},
    {"UPDATE object SET owned='[9' WHERE ordinal=8", "a list is malformed"},
    {"UPDATE object SET owned='[]' WHERE ordinal=8", "a number in a list"},
    {"UPDATE object SET owned='[-1]' WHERE ordinal=8", "a number in a list"},
    {"UPDATE object SET links='[[2,999,0,1]]' WHERE ordinal=8", "999 is not there"},
    {"UPDATE object SET links='[[2,1,0,1]]' WHERE ordinal=8", "to the font table"},
    {"UPDATE object SET links='[[5,16,0,1]]' WHERE ordinal=8", "not 1 to 4"},
    {"UPDATE object SET links='[[2,16,0,1],[2,9,0,1]]' WHERE ordinal=8", "order"},
    {"UPDATE object SET links='[[2,16,0,999999]]' WHERE ordinal=8", "order"},
    {"UPDATE object SET links='[[2,9,0,2]]' WHERE ordinal=8", "same sequence"},
    {"UPDATE object SET links='[[2,8,0,1]]' WHERE ordinal=8", "links form a cycle"},
    {"UPDATE object SET links='[[4,8,0,2]]' WHERE ordinal=16", "links form a cycle"},
    {"UPDATE object SET links='2' WHERE ordinal=8", "a list is malformed"},
    {"UPDATE object SET links=']' WHERE ordinal=8", "a list is malformed"},
    {"UPDATE object SET texts='no end' WHERE ordinal=8", "the last text is cut off"},
    {"UPDATE object SET texts='\\x'||char(10) WHERE ordinal=8", "a text is malformed"},
    {"UPDATE object SET texts='\\'||char(10) WHERE ordinal=8", "a text is malformed"},
    {"UPDATE object SET texts='a'||char(10) WHERE kind='id_symbol'", "not two texts"},
    {"UPDATE object SET numbers=x'ffffffff00000000000000000000000000000000' "
     "WHERE ordinal=8",
     "a count exceeds the stored numbers"},
    {"UPDATE object SET numbers=x'ffffff7f' WHERE kind='area'", "a count exceeds"},
    {"UPDATE object SET numbers=NULL WHERE kind='area'", "numbers are missing"},
    {"UPDATE object SET refers=99 WHERE kind='pattern'", "pattern master is missing"},
    {"UPDATE object SET refers=99 WHERE ordinal=2", "its view 99 is not there"},
    {"UPDATE object SET refers=5 WHERE ordinal=2", "do not belong together"},
    {"UPDATE object SET refers=4 WHERE ordinal=3", "do not belong together"},
    {"UPDATE object SET refers=1 WHERE ordinal=2", "its view is no view"},
    {"UPDATE object SET refers=3 WHERE ordinal=3", "do not belong together"},
    {"UPDATE object SET refers=0 WHERE ordinal=2", "its view 0 is not there"},
    {"UPDATE object SET numbers=CAST(x'09000000'||substr(numbers,5) AS BLOB) WHERE "
     "ordinal=2",
     "size"},
    {"UPDATE attribute SET object=999 WHERE object=16", "not there"},
    {"UPDATE attribute SET position=position+1 WHERE object=0 AND position=2",
     "missing or out of order"},
    {"UPDATE part SET units=3", "the units are unknown"},
    {"UPDATE part SET work_layer=300", "a layer is not 1 to 256"},
    {"UPDATE part SET layers=x'00'", "numbers are missing"},
    {"UPDATE part SET current_sheet=999", "current sheet is not there"},
    {"UPDATE part SET current_sheet=9", "current sheet is no sheet"},
    {"UPDATE part SET font_table=9", "font table is no font table"},
    {"UPDATE part SET font_table=0", "the part has no font table"},
    {"INSERT INTO object SELECT "
     "900,kind,class,name,status,layer,color,line_font,width,blanked,view,"
     "owner,refers,links,owned,texts,numbers,0 FROM object WHERE kind='font_table';"
     "UPDATE part SET next_ordinal=901",
     "the part has two font tables"},
    {"UPDATE object SET refers=0 WHERE ordinal IN (2,3)", "its view 0 is not there"},
    {"UPDATE part SET next_ordinal=5000000000000000000", "a counter is out of range"},
    {"UPDATE part SET next_ordinal=5", "out of range"},
    {"UPDATE part SET next_link_sequence=0", "a counter is below 1"},
    {"UPDATE pattern_master SET shapes=x'ffffffff'", "a count exceeds"},
    {"UPDATE pattern_master SET texts=NULL", "texts of a shape are missing"},
    {"UPDATE pattern_master SET texts=texts||'more'||char(10)", "more texts than"},
    {"UPDATE pattern_master SET id=-1", "below 1"},
};

} // namespace store_test
