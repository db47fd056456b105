#include "options/frmoption.h"

#include "codec/charcode.h"
#include "codec/returncode.h"
#include "options/choicecombo.h"
#include "platform/formparts.h"
#include "platform/screenclass.h"

#include <QCheckBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr int firstColor = 1; // what is stored for "Black"
constexpr std::array charCodeChoices{ CharCode::Utf8, CharCode::ShiftJis, CharCode::Euc, CharCode::Jis };
constexpr std::array returnCodeChoices{ ReturnCode::Cr, ReturnCode::CrLf, ReturnCode::Lf };
constexpr int digitsOfNumber = 6; // that a field for a number has room for

constexpr const char *colorNames[] = {
    QT_TRANSLATE_NOOP("frmOption", "Black"),
    QT_TRANSLATE_NOOP("frmOption", "White"),
    QT_TRANSLATE_NOOP("frmOption", "DarkGray"),
    QT_TRANSLATE_NOOP("frmOption", "Gray"),
    QT_TRANSLATE_NOOP("frmOption", "LightGray"),
    QT_TRANSLATE_NOOP("frmOption", "Red"),
    QT_TRANSLATE_NOOP("frmOption", "Green"),
    QT_TRANSLATE_NOOP("frmOption", "Blue"),
    QT_TRANSLATE_NOOP("frmOption", "Cyan"),
    QT_TRANSLATE_NOOP("frmOption", "Magenta"),
    QT_TRANSLATE_NOOP("frmOption", "Yellow"),
    QT_TRANSLATE_NOOP("frmOption", "DarkRed"),
    QT_TRANSLATE_NOOP("frmOption", "DarkGreen"),
    QT_TRANSLATE_NOOP("frmOption", "DarkBlue"),
    QT_TRANSLATE_NOOP("frmOption", "DarkCyan"),
    QT_TRANSLATE_NOOP("frmOption", "DarkMagenta"),
    QT_TRANSLATE_NOOP("frmOption", "DarkYellow"),
};

/// The script that the user's language is written in.
QFontDatabase::WritingSystem localeWritingSystem()
{
    switch (QLocale().script()) {
    case QLocale::JapaneseScript:
        return QFontDatabase::Japanese;
    case QLocale::KoreanScript:
        return QFontDatabase::Korean;
    case QLocale::SimplifiedHanScript:
        return QFontDatabase::SimplifiedChinese;
    case QLocale::TraditionalHanScript:
        return QFontDatabase::TraditionalChinese;
    case QLocale::CyrillicScript:
        return QFontDatabase::Cyrillic;
    case QLocale::GreekScript:
        return QFontDatabase::Greek;
    case QLocale::LatinScript:
        return QFontDatabase::Latin;
    default:
        return QFontDatabase::Any;
    }
}

int pageSpace()
{
    return forScreen(3, 7);
}

QGridLayout *createPage(QWidget *page)
{
    auto *grid = new QGridLayout(page);
    setSpaces(grid, pageSpace(), pageSpace());
    grid->setColumnStretch(1, 1);
    return grid;
}

/// Controls side by side; lists take the room that is left.
QLayout *createRow(const QList<QWidget *> &controls)
{
    auto *row = new QHBoxLayout;
    row->setSpacing(pageSpace());
    for (QWidget *control : controls)
        row->addWidget(control, qobject_cast<QComboBox *>(control) ? 1 : 0);
    row->addStretch();
    return row;
}

/// The label leads to the first of the controls, which stand side by side.
void addRow(QGridLayout *grid, const QString &text, const QList<QWidget *> &controls)
{
    const int row = grid->rowCount();
    grid->addWidget(createLabel(text, controls.constFirst()), row, 0);
    grid->addLayout(createRow(controls), row, 1);
}

void finishPage(QGridLayout *grid)
{
    grid->setRowStretch(grid->rowCount(), 1);
}

QStringList colorTexts()
{
    QStringList texts;
    for (const char *name : colorNames)
        texts << frmOption::tr(name);
    return texts;
}

QLineEdit *createNumber(const QString &key, int value)
{
    auto *field = new QLineEdit(QString::number(value));
    field->setObjectName(key);
    const QString widest(digitsOfNumber + 1, u'0'); // one more for the field's frame
    field->setFixedWidth(field->fontMetrics().horizontalAdvance(widest));
    return field;
}

QComboBox *createTypableCombo(const QString &key)
{
    auto *combo = new QComboBox;
    combo->setObjectName(key);
    makeTypable(combo);
    combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    combo->setMinimumContentsLength(digitsOfNumber);
    return combo;
}

} // namespace

void frmOption::setComboColorItem(QComboBox *combo)
{
    combo->addItems(colorTexts());
}

QWidget *frmOption::createView1Page()
{
    auto *page = new QWidget;
    QGridLayout *grid = createPage(page);
    grid->addWidget(createSigns(), 0, 0, 1, 2);
    createFontName();
    addRow(grid, tr("&Font :"), { m_fontName });
    createFontSize();
    addRow(grid, tr("Font &size :"), { m_fontSize });
    addRow(grid, tr("F&oreColor :"),
        { m_controls.createChoice(u"ForeColor"_s, &AppSettings::ForeColor, firstColor, colorTexts()) });
    addRow(grid, tr("&BackColor :"),
        { m_controls.createChoice(u"BackColor"_s, &AppSettings::BackColor, firstColor, colorTexts()) });
    createWrap();
    addRow(grid, tr("&Wrap mode :"), { m_wrapMode, m_wrapLen });
    finishPage(grid);
    return page;
}

QWidget *frmOption::createSigns()
{
    auto *group = new QGroupBox(tr("Mark display"));
    auto *grid = new QGridLayout(group);
    setSpaces(grid, pageSpace(), pageSpace());
    grid->addWidget(m_controls.createCheck(u"ShowKAI"_s, &AppSettings::ShowKAI, tr("&Return code")), 0, 0);
    grid->addWidget(m_controls.createCheck(u"ShowTAB"_s, &AppSettings::ShowTAB, tr("&Tab character")), 0, 1);
    grid->addWidget(
        m_controls.createCheck(u"ShowZEN"_s, &AppSettings::ShowZEN, tr("&Multi-byte space")), 1, 0);
    grid->addWidget(m_controls.createCheck(u"ShowEOF"_s, &AppSettings::ShowEOF, tr("&EOF")), 1, 1);
    return group;
}

void frmOption::createFontName()
{
    m_fontName = createTypableCombo(u"FontName"_s);
    for (const QString &family : QFontDatabase::families(localeWritingSystem())) {
        if (!QFontDatabase::isPrivateFamily(family))
            m_fontName->addItem(family);
    }
    m_fontName->setCurrentIndex(
        m_fontName->findText(appSettings().FontName, Qt::MatchFixedString | Qt::MatchCaseSensitive));
    m_fontName->setEditText(appSettings().FontName);
    m_fontName->lineEdit()->home(false); // a long name from its beginning
}

void frmOption::createFontSize()
{
    m_fontSize = createTypableCombo(u"FontSize"_s);
    m_fontSize->addItems({ u"10"_s, u"12"_s, u"16"_s, u"18"_s, u"20"_s, u"24"_s, u"32"_s });
    const QString size = QString::number(appSettings().FontSize);
    m_fontSize->setCurrentIndex(m_fontSize->findText(size));
    m_fontSize->setEditText(size);
}

void frmOption::createWrap()
{
    m_wrapMode = m_controls.createChoice(
        u"WrapMode"_s, &AppSettings::WrapMode, 0, { tr("None"), tr("Auto"), tr("Fixed column") });
    connect(m_wrapMode, &QComboBox::activated, this, &frmOption::slotWrapModeActivated);
    m_wrapLen = createNumber(u"WrapLen"_s, appSettings().WrapLen);
    m_wrapLen->setAccessibleName(tr("Wrap columns"));
    slotWrapModeActivated(m_wrapMode->currentIndex());
}

QWidget *frmOption::createView2Page()
{
    auto *page = new QWidget;
    QGridLayout *grid = createPage(page);
    ChoiceCombo *rowNo = m_controls.createChoice(
        u"RowNo"_s, &AppSettings::RowNo, 0, { tr("None"), tr("Small size"), tr("Large size") });
    addRow(grid, tr("&Row No :"), { rowNo });
    ChoiceCombo *rowNoColor = m_controls.createChoice(
        u"RowNoColor"_s, &AppSettings::RowNoColor, 0, QStringList{ tr("(Same ForeColor)") } + colorTexts());
    addRow(grid, tr("Row No &Color :"), { rowNoColor });
    ChoiceCombo *activeLine = m_controls.createChoice(
        u"ActiveHLine"_s, &AppSettings::ActiveHLine, 0, QStringList{ tr("None") } + colorTexts());
    addRow(grid, tr("&Active Line :"), { activeLine });
    m_tabLen = createNumber(u"TabLen"_s, appSettings().TabLen);
    addRow(grid, tr("&Tab size :"), { m_tabLen });
    finishPage(grid);
    return page;
}

QWidget *frmOption::createDetailPage()
{
    auto *page = new QWidget;
    QGridLayout *grid = createPage(page);
    QCheckBox *restore = m_controls.createCheck(
        u"RestoreScroll"_s, &AppSettings::RestoreScroll, tr("A cursor &position is restored when opens"));
    grid->addWidget(restore, 0, 0, 1, 2);
    ChoiceCombo *indent = m_controls.createChoice(u"AutoIndent"_s, &AppSettings::AutoIndent, 0,
        { tr("None"), tr("Tab & space"), tr("Tab & space & MultiSpace") });
    // Rows of their own: in common columns they would be too wide for a small screen.
    const auto addWideRow = [grid](const QList<QWidget *> &controls) {
        grid->addLayout(createRow(controls), grid->rowCount(), 0, 1, 2);
    };
    addWideRow({ createLabel(tr("&Auto indent :"), indent), indent });
    ChoiceCombo *charCode = createCharCode();
    addWideRow({ createLabel(tr("Default c&har code:"), charCode), charCode, createReturnCode() });
    m_recentViewCnt = createNumber(u"RecentViewCnt"_s, recentFiles().RecentViewCnt);
    QLabel *label = createLabel(tr("&Recent Files count:"), m_recentViewCnt);
    addWideRow({ label, m_recentViewCnt, new QLabel(tr("(0-15)")) });
    auto *clear = new QPushButton(tr("&Clear Recent Files"));
    connect(clear, &QPushButton::clicked, this, &frmOption::slotRecentClear);
    grid->addWidget(clear, grid->rowCount(), 0, 1, 2, Qt::AlignLeft);
    finishPage(grid);
    return page;
}

ChoiceCombo *frmOption::createCharCode()
{
    QList<SettingControls::Item> items;
    for (const CharCode code : charCodeChoices)
        items.append({ int(code), infoOf(code).label });
    return m_controls.createChoice(u"DefCodec"_s, &AppSettings::DefCodec, items);
}

ChoiceCombo *frmOption::createReturnCode()
{
    QList<SettingControls::Item> items;
    for (const ReturnCode code : returnCodeChoices)
        items.append({ int(code), infoOf(code).name });
    ChoiceCombo *returnCode = m_controls.createChoice(u"DefCRLF"_s, &AppSettings::DefCRLF, items);
    returnCode->setAccessibleName(tr("Line end"));
    return returnCode;
}
