#pragma once

#include "tests/app/stripinwindow.h"
#include "tests/testprogram.h"

#include <memory>
#include <optional>
#include <utility>

/// A window that shows a file, a.txt with "old", which other programs change.
class DiskScene {
protected:
    void beginScene()
    {
        resetSettings();
        qputenv("QPEDIR", BUILT_QPE_DIR);
        m_files = std::make_unique<TestFiles>();
        remake();
        m_window->slotCmdFileCloseTab();
        m_window->setDocument(m_files->write(QStringLiteral("a.txt"), "old\n"));
    }
    void endScene()
    {
        for (ctlEditer *editor : m_window->tabBar()->editors())
            editor->setEdited(false);
        m_window.reset();
    }
    void remake(WindowJobs jobs = {})
    {
        m_window = std::make_unique<TestWindow>(std::move(jobs));
        m_strip.emplace(*m_window);
        QVERIFY(m_window->open());
    }
    ctlEditer &editor() const { return *m_window->currentEditor(); }

    std::unique_ptr<TestFiles> m_files;
    std::unique_ptr<TestWindow> m_window;
    std::optional<StripInWindow> m_strip;
};
