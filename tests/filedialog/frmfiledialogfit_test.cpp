#include "filedialog/ctlfilelistview.h"
#include "filedialog/frmfiledialog.h"
#include "tests/filedialog/formtest.h"
#include "tests/filedialog/testfolder.h"
#include "tests/testprogram.h"

#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QMap>
#include <QPushButton>
#include <QStyle>
#include <QStyleOptionButton>
#include <QStyleOptionComboBox>
#include <QTranslator>

namespace {

using Texts = QMap<QByteArray, QString>;

Texts japanese()
{
    return {
        { "File Name:", QStringLiteral(u"ファイル名:") },
        { "File Type:", QStringLiteral(u"種類:") },
        { "Char code:", QStringLiteral(u"文字コード:") },
        { "Cancel", QStringLiteral(u"キャンセル") },
        { "Auto", QStringLiteral(u"自動") },
        { "text files (*.txt;..)", QStringLiteral(u"テキスト (*.txt;..)") },
        { "Qtopia files (*.conf;..)", QStringLiteral(u"Qtopia (*.conf;..)") },
        { "HTML files (*.htm;js;..)", QStringLiteral(u"HTML (*.htm;js;..)") },
        { "Web files (*.cgi;pl;..)", QStringLiteral(u"Web (*.cgi;pl;..)") },
        { "C language (*.h;c;cpp;..)", QStringLiteral(u"C言語 (*.h;c;cpp;..)") },
        { "Java language (*.java;..)", QStringLiteral(u"Java言語 (*.java;..)") },
        { "all files (*.*)", QStringLiteral(u"すべて (*.*)") },
        { "Name", QStringLiteral(u"名前") },
        { "Size", QStringLiteral(u"サイズ") },
        { "Date Modified", QStringLiteral(u"更新日時") },
        { "Folder", QStringLiteral(u"フォルダ") },
    };
}

Texts french()
{
    return {
        { "File Name:", QStringLiteral(u"Nom :") },
        { "File Type:", QStringLiteral(u"Type :") },
        { "Char code:", QStringLiteral(u"Codage :") },
        { "Cancel", QStringLiteral(u"Annuler") },
        { "Auto", QStringLiteral(u"Auto") },
        { "text files (*.txt;..)", QStringLiteral(u"Texte (*.txt;..)") },
        { "Qtopia files (*.conf;..)", QStringLiteral(u"Qtopia (*.conf;..)") },
        { "HTML files (*.htm;js;..)", QStringLiteral(u"HTML (*.htm;js;..)") },
        { "Web files (*.cgi;pl;..)", QStringLiteral(u"Web (*.cgi;pl;..)") },
        { "C language (*.h;c;cpp;..)", QStringLiteral(u"Langage C (*.h;c;cpp;..)") },
        { "Java language (*.java;..)", QStringLiteral(u"Langage Java (*.java;..)") },
        { "all files (*.*)", QStringLiteral(u"Tous (*.*)") },
        { "Name", QStringLiteral(u"Nom") },
        { "Size", QStringLiteral(u"Taille") },
        { "Date Modified", QStringLiteral(u"Modifié le") },
        { "Folder", QStringLiteral(u"Dossier") },
    };
}

class TableTranslator : public QTranslator {
public:
    explicit TableTranslator(const Texts &texts)
        : m_texts(texts)
    {
    }
    bool isEmpty() const override { return m_texts.isEmpty(); }
    QString translate(const char * /*context*/, const char *text, const char * /*disambiguation*/,
        int /*count*/) const override
    {
        return m_texts.value(QByteArray(text));
    }

private:
    Texts m_texts;
};

int textWidth(const QWidget *widget, const QString &text)
{
    return widget->fontMetrics().horizontalAdvance(text);
}

} // namespace

/// Every text of the dialog has room in its control.
class FitTest : public QObject {
    Q_OBJECT

private slots:
    void fits_data();
    void fits();

private:
    void checkLabels(const frmFileDialog &dialog);
    void checkButtons(const frmFileDialog &dialog);
    void checkCombos(const frmFileDialog &dialog);
    void checkList(const frmFileDialog &dialog);
};

void FitTest::fits_data()
{
    QTest::addColumn<Texts>("texts");
    QTest::addColumn<bool>("vga");
    QTest::addColumn<frmFileDialog::Mode>("mode");
    for (const bool vga : { false, true }) {
        for (const frmFileDialog::Mode mode : { frmFileDialog::Open, frmFileDialog::SaveAs }) {
            const char *const form = mode == frmFileDialog::Open ? "open" : "save as";
            const char *const screen = vga ? "VGA" : "small";
            QTest::addRow("English, %s, %s", screen, form) << Texts() << vga << mode;
            QTest::addRow("Japanese, %s, %s", screen, form) << japanese() << vga << mode;
            QTest::addRow("French, %s, %s", screen, form) << french() << vga << mode;
        }
    }
}

void FitTest::fits()
{
    failOnWarnings();
    QFETCH(Texts, texts);
    QFETCH(bool, vga);
    QFETCH(frmFileDialog::Mode, mode);
    setScreenClass(vga);
    TableTranslator translator(texts);
    if (!texts.isEmpty())
        QVERIFY(QCoreApplication::installTranslator(&translator));
    const TestFolder folder;
    folder.folder("sub");
    frmFileDialog dialog(nullptr, mode, folder.path(), QStringLiteral("a.txt"), inOneGo());
    dialog.show();
    dialog.initTimer();
    checkLabels(dialog);
    checkButtons(dialog);
    checkCombos(dialog);
    checkList(dialog);
    // The handheld's own screens are 240 and 480 (upright) pixels wide.
    QVERIFY2(dialog.width() <= (vga ? 480 : 240), QByteArray::number(dialog.width()).constData());
    if (const QString name = qEnvironmentVariable("MARLOPAD_PICTURES"); !name.isEmpty()) {
        QString row = QString::fromLatin1(QTest::currentDataTag());
        QVERIFY(dialog.grab().save(name + u'/' + row.replace(u',', u'-') + QStringLiteral(".png")));
    }
}

void FitTest::checkLabels(const frmFileDialog &dialog)
{
    for (const QLabel *label : dialog.findChildren<QLabel *>()) {
        QVERIFY2(textWidth(label, label->text()) <= label->width(), qPrintable(label->text()));
        QVERIFY2(label->fontMetrics().height() <= label->height(), qPrintable(label->text()));
    }
}

void FitTest::checkButtons(const frmFileDialog &dialog)
{
    constexpr int frame = 2;
    for (const QPushButton *button : dialog.findChildren<QPushButton *>()) {
        QVERIFY2(
            textWidth(button, button->text()) + 2 * frame <= button->width(), qPrintable(button->text()));
        QVERIFY2(
            button->fontMetrics().ascent() + button->fontMetrics().descent() + 2 * frame <= button->height(),
            qPrintable(button->text()));
    }
}

void FitTest::checkCombos(const frmFileDialog &dialog)
{
    for (const QComboBox *combo : dialog.findChildren<QComboBox *>()) {
        QStyleOptionComboBox option;
        option.initFrom(combo);
        option.editable = combo->isEditable();
        const QRect field =
            combo->style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, combo);
        for (int row = 0; row < combo->count(); ++row)
            QVERIFY2(
                textWidth(combo, combo->itemText(row)) <= field.width(), qPrintable(combo->itemText(row)));
        QVERIFY(combo->fontMetrics().ascent() + combo->fontMetrics().descent() <= combo->height());
    }
}

void FitTest::checkList(const frmFileDialog &dialog)
{
    const auto *list = dialog.findChild<ctlFileListView *>();
    constexpr int margins = 6;
    for (int column = 0; column < list->rows().columnCount(); ++column) {
        const QString title = list->rows().headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
        QVERIFY2(textWidth(list->header(), title) + margins <= list->columnWidth(column), qPrintable(title));
    }
    const ctlFileListViewItem *folder = list->rows().itemAt(list->rows().index(0, 0));
    QVERIFY(textWidth(list, folder->text(1)) + margins <= list->columnWidth(1));
    QVERIFY(textWidth(list, QStringLiteral("24/03/07 09:05")) <= list->columnWidth(2));
    QVERIFY(textWidth(list, QStringLiteral("999 KB")) + margins <= list->columnWidth(1));
}

REGISTER_TEST(runFormTest<FitTest>)
#include "frmfiledialogfit_test.moc"
