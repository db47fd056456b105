#pragma once

#include "options/frmoption.h"
#include "tests/messageboxes.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QStandardPaths>
#include <QTabWidget>
#include <QTest>

#include <numeric>

/// What the tests of the options dialog share: settings, and what a control is to do whichever page it is on.
namespace OptionsForm {

using namespace Qt::StringLiterals;
using Setting = int AppSettings::*;

inline const QStringList colors = { u"Black"_s, u"White"_s, u"DarkGray"_s, u"Gray"_s, u"LightGray"_s,
    u"Red"_s, u"Green"_s, u"Blue"_s, u"Cyan"_s, u"Magenta"_s, u"Yellow"_s, u"DarkRed"_s, u"DarkGreen"_s,
    u"DarkBlue"_s, u"DarkCyan"_s, u"DarkMagenta"_s, u"DarkYellow"_s };

inline QString settingsFile()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u"/marlopad.conf"_s;
}

/// Settings of a first start, and no file of them.
inline void resetSettings()
{
    appSettings() = {};
    recentFiles() = {};
    QFile::remove(settingsFile());
}

/// All settings in one line each, for comparing records.
inline QStringList allSettings()
{
    const AppSettings &s = appSettings();
    QStringList texts{ s.FontName };
    for (const int number : { s.Lang, s.ShowKAI, s.ShowTAB, s.ShowZEN, s.ShowEOF, s.FontSize, s.AutoIndent,
             s.WrapMode, s.WrapLen, s.TabLen, s.RestoreScroll, s.RowNo, s.ActiveHLine, s.DefCodec, s.DefCRLF,
             s.BackColor, s.ForeColor, s.RowNoColor, recentFiles().RecentViewCnt })
        texts << QString::number(number);
    return texts;
}

inline int &storedNumber(const QString &name)
{
    if (name == u"WrapLen")
        return appSettings().WrapLen;
    if (name == u"FontSize")
        return appSettings().FontSize;
    return name == u"TabLen" ? appSettings().TabLen : recentFiles().RecentViewCnt;
}

/// A control by its setting's key.
template <typename Control = QWidget> Control *control(const QWidget &dialog, const QString &name)
{
    auto *found = dialog.findChild<Control *>(name);
    if (!found)
        qFatal("no control %s", qPrintable(name));
    return found;
}

inline QWidget *pageOf(const frmOption &dialog, int page)
{
    return dialog.findChild<QTabWidget *>()->widget(page);
}

/// The page's labels in the order they are read, each with the key of the control it leads to; check boxes
/// are their own labels.
inline QStringList labelsOf(const frmOption &dialog, int page)
{
    QStringList labels;
    const QWidget *widget = pageOf(dialog, page);
    for (const QWidget *child : widget->findChildren<QWidget *>()) {
        if (const auto *label = qobject_cast<const QLabel *>(child); label && label->buddy())
            labels << label->text().remove(u'&') + u" -> "_s + label->buddy()->objectName();
        else if (const auto *box = qobject_cast<const QCheckBox *>(child))
            labels << box->text().remove(u'&') + u" -> "_s + box->objectName();
    }
    return labels;
}

inline QStringList itemsOf(const QComboBox *combo)
{
    QStringList items;
    for (int i = 0; i < combo->count(); ++i)
        items << combo->itemText(i);
    return items;
}

/// As a user chooses it.
inline void choose(QComboBox *combo, int index)
{
    combo->setCurrentIndex(index);
    emit combo->activated(index);
}

/// Types into the number of that name, a field or an editable list.
inline void setNumber(const QWidget &dialog, const QString &name, const QString &text)
{
    if (auto *combo = dialog.findChild<QComboBox *>(name))
        combo->setEditText(text);
    else
        control<QLineEdit>(dialog, name)->setText(text);
}

inline QString numberText(const QWidget &dialog, const QString &name)
{
    const auto *combo = dialog.findChild<QComboBox *>(name);
    return combo ? combo->currentText() : control<QLineEdit>(dialog, name)->text();
}

/// Whether each is to the right of the one before, on the same row.
inline bool areSideBySide(const QWidget &dialog, const QList<const QWidget *> &widgets)
{
    const auto placeOf = [&dialog](const QWidget *widget) {
        return QRect(widget->mapTo(&dialog, QPoint(0, 0)), widget->size());
    };
    for (qsizetype i = 1; i < widgets.size(); ++i) {
        const QRect left = placeOf(widgets.at(i - 1)), right = placeOf(widgets.at(i));
        if (left.right() >= right.left() || qAbs(left.center().y() - right.center().y()) > 2)
            return false;
    }
    return true;
}

/// The box is checked for 1 alone, and 1 or 0 is stored.
inline void checkBoxShowsAndStores(const QString &name, Setting setting)
{
    for (const auto &[stored, isChecked] : { std::pair(0, false), { 1, true }, { 2, false } }) {
        appSettings().*setting = stored;
        frmOption dialog(nullptr);
        auto *box = control<QCheckBox>(dialog, name);
        QCOMPARE(box->isChecked(), isChecked);
        box->click();
        dialog.accept();
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(appSettings().*setting, isChecked ? 0 : 1);
    }
}

/// Every item is chosen for its number, and stored as it.
inline void choiceShowsAndStores(
    const QString &name, Setting setting, const QList<int> &values, const QStringList &items)
{
    QCOMPARE(itemsOf(control<QComboBox>(frmOption(nullptr), name)), items);
    const int count = int(items.size());
    for (int index = 0; index < count; ++index) {
        appSettings().*setting = values.at(index);
        frmOption dialog(nullptr);
        auto *combo = control<QComboBox>(dialog, name);
        QCOMPARE(combo->currentIndex(), index);
        QVERIFY(!combo->isEditable());
        choose(combo, (index + 1) % count);
        dialog.accept();
        QCOMPARE(appSettings().*setting, values.at((index + 1) % count));
    }
}

/// The same of values that follow one another.
inline void choiceShowsAndStores(const QString &name, Setting setting, int first, const QStringList &items)
{
    QList<int> values(items.size());
    std::iota(values.begin(), values.end(), first);
    choiceShowsAndStores(name, setting, values, items);
}

/// A number that is no item is shown as it is, and stays until an item is chosen.
inline void foreignValueStays(const QString &name, Setting setting, int value)
{
    appSettings().*setting = value;
    const QStringList before = allSettings();
    {
        frmOption dialog(nullptr);
        const auto *combo = control<QComboBox>(dialog, name);
        QCOMPARE(combo->currentIndex(), -1);
        QCOMPARE(combo->placeholderText(), QString::number(value));
        QCOMPARE(
            combo->palette().color(QPalette::PlaceholderText), combo->palette().color(QPalette::ButtonText));
        dialog.show();
        dialog.accept();
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(allSettings(), before);
    }
    frmOption dialog(nullptr);
    dialog.show();
    auto *combo = control<QComboBox>(dialog, name);
    QTest::keyClick(combo, Qt::Key_Down);
    QCOMPARE(combo->currentIndex(), 0);
    dialog.accept();
    QVERIFY(appSettings().*setting != value);
}

/// Adds rows of texts that every number takes as 12, or refuses.
inline void addNumbers(const QString &notNumeric)
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("message");
    QTest::addColumn<int>("stored");
    const std::pair<const char *, QString> twelve[] = { { "plain", u"12"_s }, { "blanks around", u" 12  "_s },
        { "full-width blanks around", u"\u300012\u3000"_s }, { "full width", u"１２"_s },
        { "mixed widths", u"1２"_s }, { "plus", u"+12"_s }, { "full-width plus", u"＋１２"_s },
        { "leading zero is decimal", u"012"_s } };
    for (const auto &[name, text] : twelve)
        QTest::newRow(name) << text << QString() << 12;
    const std::pair<const char *, QString> none[] = { { "empty", QString() }, { "blanks", u"  "_s },
        { "letters", u"abc"_s }, { "letter behind", u"12x"_s }, { "blank within", u"1 2"_s },
        { "fraction", u"1.5"_s }, { "thousands", u"1,000"_s }, { "hexadecimal", u"0xC"_s },
        { "exponent", u"1e1"_s }, { "two signs", u"--1"_s }, { "sign alone", u"-"_s }, { "kanji", u"十二"_s },
        { "digits of another script", u"\u0661\u0662"_s }, { "one too large", u"2147483648"_s },
        { "one too small", u"-2147483649"_s },
        { "full width, far too large", u"９９９９９９９９９９９９９９９９９９９９"_s } };
    for (const auto &[name, text] : none)
        QTest::newRow(name) << text << notNumeric << 0;
}

inline void addAccepted(const QList<int> &numbers)
{
    for (const int number : numbers)
        QTest::addRow("%d", number) << QString::number(number) << QString() << number;
}

inline void addRefused(const QList<int> &numbers, const QString &message)
{
    for (const int number : numbers)
        QTest::addRow("%d", number) << QString::number(number) << message << 0;
}

/// Stores what is accepted; else says `message` and changes nothing, the text as typed included.
inline void numberIsCheckedAndStored(
    const QString &name, const QString &text, const QString &message, int stored)
{
    const QStringList before = allSettings();
    frmOption dialog(nullptr);
    dialog.setResult(-1);
    dialog.show();
    QCOMPARE(numberText(dialog, name), QString::number(storedNumber(name)));
    setNumber(dialog, name, text);
    MessageBoxes boxes;
    dialog.accept();
    if (message.isEmpty()) {
        QCOMPARE(boxes.texts(), QStringList());
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(storedNumber(name), stored);
        return;
    }
    QCOMPARE(boxes.texts(), QStringList{ u"Error|"_s + message });
    QCOMPARE(boxes.shown().at(0).icon, QMessageBox::Critical);
    QVERIFY(dialog.isVisible());
    QCOMPARE(dialog.result(), -1);
    QCOMPARE(numberText(dialog, name), text);
    QCOMPARE(allSettings(), before);
    QVERIFY(!QFile::exists(settingsFile()));
}

} // namespace OptionsForm
