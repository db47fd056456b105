#pragma once

#include <QObject>

#include <memory>

class QByteArray;
class QMimeData;
class QRubberBand;
class QWidget;

/// Has files open that are dropped on a window, wherever no part of it takes what is dropped. As long as they
/// are held over it, all of it is marked as their target. What comes with them and is no file here is told;
/// alone it is not taken, which the pointer says.
class FileDrops : public QObject {
    Q_OBJECT
public:
    explicit FileDrops(QWidget &window);
    ~FileDrops() override;

    bool eventFilter(QObject *watched, QEvent *event) override;

    /// What data bring, as addresses.
    static QList<QByteArray> addressesIn(const QMimeData &data);

private:
    void mark(bool isMarked);

    QWidget &m_window;
    std::unique_ptr<QRubberBand> m_target; ///< while files are held
};
