#pragma once

#include <QDateTime>
#include <QDialog>
#include <QList>

class QListWidget;
class QPushButton;

/// A text that was not saved, as the list of them shows it.
struct UnsavedText {
    QString name; ///< of its file; of one that has none the name of its tab
    QString folder; ///< empty without a file
    QDateTime time; ///< of the last edit that was kept
    qint64 size = 0; ///< UTF-16 units; below 0: not known
};

/// Asks which of the texts that were not saved come back, and which go for ever. All are chosen at first.
class frmRecovery : public QDialog {
    Q_OBJECT
public:
    enum Result { Later = Rejected, Restore = Accepted, Discard };

    frmRecovery(QWidget *parent, const QList<UnsavedText> &texts);

    /// The rows that restoring or discarding is for.
    QList<int> chosen() const;

private:
    void addRow(const UnsavedText &text);
    void showWhetherAnyIsChosen();
    void askAndDiscard();

    QListWidget *m_list;
    QPushButton *m_restore = nullptr;
    QPushButton *m_discard = nullptr;
};
