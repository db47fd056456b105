#pragma once

#include "document/filereading.h"
#include "jobs/handover.h"
#include "jobs/jobwork.h"

/// Reads a file behind the window, and hands its text over in parts.
class ReadWork : public JobWork {
public:
    /// See FileReading.
    ReadWork(FileReading::Request request, LayoutCopy layout, const FileCalls &calls = FileCalls::system());

    struct Part : FileReading::Part {
        FileCodes codes; ///< of this text, as far as is known
    };
    /// What has come since the last call, in order. In the window's thread.
    std::vector<Part> take() { return m_parts.take(); }
    /// For what is still to be read. In the window's thread.
    void setLayout(LayoutCopy layout) { m_reading.setLayout(std::move(layout)); }
    /// When it is done.
    const ReadResult &result() const { return m_reading.result(); }
    /// When it has failed.
    virtual ReadFailure failure() const { return m_reading.failure(); }

    Step step(JobTurn &turn) override;
    void giveUp() override { m_reading.giveUp(); }

protected:
    FileReading &reading() { return m_reading; }
    /// A step that tells of no progress.
    Step readOn(JobTurn &turn);

private:
    FileReading m_reading;
    HandOver<Part> m_parts;
};
