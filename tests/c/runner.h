// The fixture under the C tests.
#pragma once

#include "tests/api/interface_story.h"

#include "api/guard.h"

class CInterface : public InterfaceStory {
public:
    tag_t other() const { return m_other; }
    tag_t dead() const { return m_dead; }
    tag_t note() const { return m_note; }
    unsigned reopen();

    using InterfaceStory::sheet;
    using InterfaceStory::story;

protected:
    void SetUp() override;
    void TearDown() override;

private:
    tag_t m_other = NULL_TAG;
    tag_t m_dead = NULL_TAG;
    tag_t m_note = NULL_TAG;
};
