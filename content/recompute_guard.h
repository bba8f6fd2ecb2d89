// A field whose default is not only its initial value computes it anew on every move. While it is
// being written, which moves it too, it must not: that would never end. The marks are the
// process's, since any number of wrappers view one record.
#pragma once

#include "uf_defs.h"

namespace QelFmt {

// The field is being written as long as this lives.
class WritingField {
public:
    explicit WritingField(tag_t field);
    ~WritingField();
    WritingField(WritingField &&) = delete;
};

// No field computes its value as long as this lives: a table moves its rows, values stay.
class ValuesStay {
public:
    ValuesStay();
    ~ValuesStay();
    ValuesStay(ValuesStay &&) = delete;
};

bool mayRecompute(tag_t field);

} // namespace QelFmt
