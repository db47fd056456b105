#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

/// Counts the replacements of a replace-all run, which reads the two flags after each one. Modal; shows
/// itself when it is made.
class frmReplaceProgress : public QWidget {
    Q_OBJECT
public:
    explicit frmReplaceProgress(QWidget *parent);

    bool stopRequested = false; ///< the panel was hidden or closed; not by being minimised with its window
    bool speedUp = false; ///< the rest of the run need not be shown

    void setCount(int count);

public slots:
    void slotClickHiSpeed();

protected:
    void hideEvent(QHideEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QLabel *m_count;
    QPushButton *m_speedUp;
};
