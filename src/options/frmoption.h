#pragma once

#include "options/settingcontrols.h"

#include <QDialog>

class ChoiceCombo;
class QComboBox;
class QLineEdit;
class QTabWidget;

/// Lets the user edit the view and editing settings; made for one use and run modally.
///
/// The values live in the settings records. OK checks the numbers, writes all controls into the records and
/// the records into their file; giving them to the open documents is for whoever ran the dialog. Each control
/// has its setting's key as its object name.
class frmOption : public QDialog {
    Q_OBJECT
public:
    explicit frmOption(QWidget *parent);

    /// Appends the names of the colours 1 to 17.
    static void setComboColorItem(QComboBox *combo);

public slots:
    /// The column count is for "Fixed column" alone.
    void slotWrapModeActivated(int index);
    /// Asks, then makes every row of the recent-files table unused, at once and whatever becomes of the
    /// dialog.
    void slotRecentClear();
    /// Stores and closes when every number is one and in its bounds; else names the first that is not and
    /// stays open.
    void accept() override;

private:
    QWidget *createView1Page();
    QWidget *createView2Page();
    QWidget *createDetailPage();
    QWidget *createSigns();

    void createFontName();
    void createFontSize();
    void createWrap();
    ChoiceCombo *createCharCode();
    ChoiceCombo *createReturnCode();

    struct Number;
    QList<Number> numbers() const;
    bool isUsable(const Number &number);
    void showField(QLineEdit *field);
    void store() const;
    bool isWrapFixed() const;

    SettingControls m_controls;
    QTabWidget *m_pages;
    QComboBox *m_fontName = nullptr;
    QComboBox *m_fontSize = nullptr;
    ChoiceCombo *m_wrapMode = nullptr;
    QLineEdit *m_wrapLen = nullptr;
    QLineEdit *m_tabLen = nullptr;
    QLineEdit *m_recentViewCnt = nullptr;
};
