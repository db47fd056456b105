#pragma once

#include "document/readwork.h"
#include "files/inputreading.h"

#include <memory>

/// Reads what comes from a pipe or the like behind the window, and hands its text over as it comes.
///
/// All bytes stand in a file meanwhile, from which they are decoded and can be decoded anew: which code they
/// are in is only known at their end. How much there is nobody knows, so no progress is told.
class InputWork : public ReadWork {
public:
    InputWork(std::shared_ptr<InputReading> input, std::optional<CharCode> code, FileCodes codesOfSilent,
        LayoutCopy layout);

    /// The file that has what has come, as long as `input` lives.
    static QString fileOf(const InputReading &input);

    /// As for ReadWork; where the input has failed what has come is all, unless that cannot be kept.
    ReadFailure failure() const override;
    Step step(JobTurn &turn) override;

private:
    void readInput();

    const std::shared_ptr<InputReading> m_input;
    bool m_isWhole = false;
};
