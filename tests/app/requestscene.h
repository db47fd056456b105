#pragma once

#include "app/qpeapplicationesc.h"
#include "tests/app/testwindow.h"
#include "tests/testprogram.h"

#include <memory>

/// A window that files are requested of, from the shell, by the launcher or by dropping them.
class RequestScene {
protected:
    void beginScene()
    {
        resetSettings();
        m_files = std::make_unique<TestFiles>();
        m_window = std::make_unique<TestWindow>();
        theApplication().showMainWidget(m_window.get());
        QVERIFY(m_window->open());
    }
    ctlEditer &editor() const { return *m_window->currentEditor(); }
    QString openFiles() const { return m_window->tabTexts().join(u' '); }

    std::unique_ptr<TestFiles> m_files;
    std::unique_ptr<TestWindow> m_window;
};

template <class Test> int runRequestTest(int argc, char **argv)
{
    QPEApplicationEsc app(argc, argv);
    Test test;
    return QTest::qExec(&test, argc, argv);
}
