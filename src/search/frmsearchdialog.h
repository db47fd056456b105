#pragma once

#include "search/searchhistory.h"

#include <QMargins>
#include <QWidget>

#include <optional>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;

/// The panel that asks what to search for and replace by. It does not search: the main window does, when one
/// of its signals fires, and reads the fields then.
///
/// It is made once and hidden and shown from then on; each time it is shown it begins anew with the fields as
/// they are. The histories are read when it is made, and written whenever they change and at the end.
class frmSearchDialog : public QWidget {
    Q_OBJECT
public:
    explicit frmSearchDialog(QWidget *parent);
    ~frmSearchDialog() override;

    int searchMode = 0; ///< 0 search, 1 replace; taken when the panel is shown
    QString findText; ///< when shown: the text to begin with; after an action: what was searched for
    QString replaceText; ///< of the last action
    bool caseSensitive = false; ///< at the last action
    SearchHistory searchHistory;
    SearchHistory replaceHistory;

    void setVisible(bool visible) override;
    /// Stands below a line on the screen, such as a notice, that it would cover: at once, or when it is
    /// shown. Not where the screen has no room there. Empty: there is none.
    void keepClearOf(const QRect &line);

signals:
    /// An action was asked for, and the fields are up to date. Never with an empty `findText`.
    void nextClicked();
    void befoClicked();
    void allClicked();

public slots:
    void slotBtnNext();
    void slotBtnBefo();
    void slotBtnAll();
    void slotBtnClose();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    QComboBox *createField();
    QPushButton *createButton(const QSize &size, void (frmSearchDialog::*slot)());
    void layOut();
    void rebuild();
    void keepPlace(bool visible);
    QRect frame() const;
    void standClear();
    void fillFields();
    void setTexts();
    void fitButtonTexts();
    void act(void (frmSearchDialog::*signal)());
    bool searchesByKnownKey(const QKeyEvent &press);
    void updateHistory();
    void writeHistory();

    std::optional<QPoint> m_place; ///< of the window within its frame, when it was hidden
    QMargins m_margins; ///< of the frame, then
    QRect m_clear; ///< what it does not cover
    QComboBox *m_find;
    QLabel *m_arrow;
    QComboBox *m_replace;
    QCheckBox *m_caseSensitive;
    QPushButton *m_next;
    QPushButton *m_before;
    QPushButton *m_all;
    QPushButton *m_close;
};
