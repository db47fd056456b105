#pragma once

#include "jobs/memoryleft.h"

/// While it lives, too little memory is left once, when its thread asks for the n-th time.
class ScarceMemory {
public:
    explicit ScarceMemory(int question)
    {
        s_question = question;
        s_asked = 0;
        MemoryLeft::setAnswer([](qint64) { return s_question == 0 || ++s_asked != s_question; });
    }
    ~ScarceMemory()
    {
        MemoryLeft::setAnswer(nullptr);
        s_question = 0;
    }
    Q_DISABLE_COPY_MOVE(ScarceMemory)

    /// It was asked, and told so.
    bool wasMet() const { return s_asked >= s_question; }

private:
    static inline thread_local int s_question = 0; ///< 0: of another thread
    static inline thread_local int s_asked = 0;
};
