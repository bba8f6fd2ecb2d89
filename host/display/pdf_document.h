// A PDF of more sheets than memory should hold at once.
#pragma once

#include "display/render.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace host::display {

// Each page is shown twice, in the same order, and can be dropped in between: first for the fonts, which have
// the signs of all pages, then to be painted. What is ready goes to the sink at once.
class PdfDocument {
public:
    using Sink = std::function<void(std::string_view)>;

    PdfDocument();
    ~PdfDocument();
    PdfDocument(const PdfDocument &) = delete;
    PdfDocument &operator=(const PdfDocument &) = delete;

    void look(const DisplayList &page); // RenderError when it has no size that can be drawn
    void begin(const RenderOptions &options, Sink sink); // after all have been looked at
    void add(const DisplayList &page); // RenderError when it has changed since it was looked at
    RenderResult finish();

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace host::display
