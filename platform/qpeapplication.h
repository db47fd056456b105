#pragma once

#include <QApplication>

class QWidget;

/// The application object: screen scale, the folder of the program's data, and the requests of the launcher.
class QPEApplication : public QApplication {
    Q_OBJECT
public:
    /// Sets what the toolkit reads from the environment before it starts: one platform pixel is 1/72 inch, so
    /// fonts are 72 dots per inch and the whole interface is scaled by the screen's density / 72, unless the
    /// toolkit's own variables say otherwise. Call before constructing.
    static void prepareScale();

    QPEApplication(int &argc, char **argv);
    ~QPEApplication() override;

    /// The folder of translations and pictures: $QPEDIR, else the installation's, else the build's. No "/" at
    /// the end.
    static QString qpeDir();

    /// Offers the files of the command line to a running instance: true when one took them (the caller then
    /// exits with 0). Else this process becomes the instance that others hand their files to.
    bool handOver();

    /// Shows the window (maximised) as the one that receives launcher requests through its
    /// `setDocument(QString)` slot: first the files of the command line, then each that arrives. A request
    /// waits while a modal dialog is open or `holdRequests(true)` is in force, and is then delivered once.
    void showMainWidget(QWidget *window, bool noMaximize = false);

    /// Keeps requests waiting during a long operation that runs the event loop.
    void holdRequests(bool hold);

    /// A file to open, absolute.
    void request(const QString &fileName);

private:
    struct Private;
    Private *d;
};
