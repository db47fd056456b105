#pragma once

#include <QObject>

class QDropEvent;
class QMimeData;
class QWidget;

/// Has files open that are dropped on a window, wherever no part of it takes what is dropped.
class FileDrops : public QObject {
    Q_OBJECT
public:
    explicit FileDrops(QWidget &window);

    bool eventFilter(QObject *watched, QEvent *event) override;

    /// The absolute names of the files that data bring, whatever their bytes, in their order.
    static QStringList filesIn(const QMimeData &data);

private:
    QWidget &m_window;
};
