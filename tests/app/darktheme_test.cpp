#include "app/statusline.h"
#include "editor/noticestrip.h"
#include "tests/app/forms.h"
#include "tests/app/testwindow.h"
#include "tests/testprogram.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHash>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QScopeGuard>
#include <QScreen>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

QPalette darkPalette()
{
    const QColor ground(0x35, 0x35, 0x35);
    const QColor text(0xe0, 0xe0, 0xe0);
    QPalette colors(ground, ground);
    for (const auto role :
        { QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText })
        colors.setColor(role, text);
    colors.setColor(QPalette::Base, QColor(0x23, 0x23, 0x23));
    colors.setColor(QPalette::ToolTipBase, QColor(0x18, 0x18, 0x18));
    colors.setColor(QPalette::Highlight, QColor(0x1f, 0x5f, 0xa8));
    colors.setColor(QPalette::HighlightedText, Qt::white);
    colors.setColor(QPalette::PlaceholderText, QColor(0xa0, 0xa0, 0xa0));
    return colors;
}

double linear(int part)
{
    const double share = part / 255.0;
    return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
}

double luminanceOf(QRgb color)
{
    return 0.2126 * linear(qRed(color)) + 0.7152 * linear(qGreen(color)) + 0.0722 * linear(qBlue(color));
}

/// As the rules for readable pages count it, from 1 to 21.
double contrast(QRgb one, QRgb other)
{
    const auto [low, high] = std::minmax({ luminanceOf(one), luminanceOf(other) });
    return (high + 0.05) / (low + 0.05);
}

/// Of what is drawn most clearly, against the color that most of the picture has.
double clearestIn(const QImage &picture)
{
    QHash<QRgb, int> counts;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            ++counts[picture.pixel(x, y)];
    }
    QRgb ground = 0;
    for (auto i = counts.cbegin(); i != counts.cend(); ++i) {
        if (i.value() > counts.value(ground))
            ground = i.key();
    }
    double clearest = 1;
    for (auto i = counts.cbegin(); i != counts.cend(); ++i)
        clearest = std::max(clearest, contrast(ground, i.key()));
    return clearest;
}

bool showsSomething(const QWidget &widget)
{
    if (const auto *label = qobject_cast<const QLabel *>(&widget))
        return !label->text().isEmpty();
    if (const auto *button = qobject_cast<const QAbstractButton *>(&widget))
        return !button->text().isEmpty() || !button->icon().isNull();
    if (const auto *line = qobject_cast<const QLineEdit *>(&widget))
        return !line->displayText().isEmpty();
    if (const auto *choice = qobject_cast<const QComboBox *>(&widget))
        return !choice->currentText().isEmpty();
    if (const auto *box = qobject_cast<const QGroupBox *>(&widget))
        return !box->title().isEmpty();
    if (const auto *list = qobject_cast<const QAbstractItemView *>(&widget))
        return list->model() && list->model()->rowCount() > 0;
    return qobject_cast<const QMenuBar *>(&widget) || qobject_cast<const QTabBar *>(&widget)
        || qobject_cast<const QMultiLineEdit *>(&widget);
}

} // namespace

/// On a dark theme everything can be read: what the program paints by itself, too.
class DarkThemeTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void formsCanBeRead_data();
    void formsCanBeRead();
    void menusCanBeRead();
    void noticesCanBeRead_data();
    void noticesCanBeRead();
    void textKeepsItsColors();
    void fontsStay();

private:
    static void checkAll(QWidget &form);

    QPalette m_before;
    std::unique_ptr<TestWindow> m_window;
    TestFiles m_files;
};

void DarkThemeTest::init()
{
    resetSettings();
    moreSettings().StatusLine = 1;
    m_before = QApplication::palette();
    QApplication::setPalette(darkPalette());
    m_window = std::make_unique<TestWindow>();
    QVERIFY(m_window->open());
    m_window->setDocument(m_files.write(u"a.txt"_s, "one\n\ttwo\n"));
}

void DarkThemeTest::cleanup()
{
    m_window.reset();
    QApplication::setPalette(m_before);
}

void DarkThemeTest::checkAll(QWidget &form)
{
    constexpr double least = 3; // of letters whose edges are smoothed
    const QImage picture = form.grab().toImage();
    int seen = 0;
    for (const QWidget *const widget : form.findChildren<QWidget *>()) {
        if (!widget->isVisible() || !widget->isEnabled() || widget->window() != &form
            || !showsSomething(*widget) || widget->visibleRegion().isEmpty())
            continue;
        const QRect place = QRect(widget->mapTo(&form, QPoint()), widget->size()) & form.rect();
        const qreal scale = picture.devicePixelRatio();
        const QImage part =
            picture.copy(QRectF(place.topLeft() * scale, place.size() * scale).toAlignedRect());
        if (part.width() < 4 || part.height() < 4)
            continue;
        ++seen;
        QVERIFY2(clearestIn(part) >= least,
            qPrintable(u"%1 '%2' has %3"_s
                           .arg(QLatin1String(widget->metaObject()->className()),
                               widget->property("text").toString())
                           .arg(clearestIn(part))));
    }
    QVERIFY(seen > 0);
}

void DarkThemeTest::formsCanBeRead_data()
{
    QTest::addColumn<Form>("form");
    for (const auto &[form, name] : forms)
        QTest::newRow(name) << form;
}

void DarkThemeTest::formsCanBeRead()
{
    QFETCH(Form, form);
    const std::unique_ptr<QWidget> dialog = dialogOf(form, m_window.get());
    if (dialog)
        dialog->show();
    settle();
    checkAll(dialog ? *dialog : *m_window);
}

void DarkThemeTest::menusCanBeRead()
{
    for (const MenuId id : { MenuId::File, MenuId::Edit, MenuId::View }) {
        const QImage picture = m_window->menu(id)->grab().toImage();
        QVERIFY2(clearestIn(picture) >= 4.5, qPrintable(m_window->menu(id)->title()));
    }
}

void DarkThemeTest::noticesCanBeRead_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("of bytes") << "\xff\xfe\x80 bytes\n"_ba;
    QTest::newRow("of UTF-16") << QByteArray("\xff\xfe"
                                             "a\0b\0\n\0",
        8);
}

void DarkThemeTest::noticesCanBeRead()
{
    QFETCH(QByteArray, text);
    m_window->setDocument(m_files.write(u"b.txt"_s, text));
    auto *const strip = m_window->findChild<NoticeStrip *>();
    QVERIFY(strip && strip->isVisible());
    settle();
    checkAll(*m_window);
}

/// They are the user's, by the options.
void DarkThemeTest::textKeepsItsColors()
{
    const ctlEditer &editor = *m_window->currentEditor();
    QCOMPARE(editor.palette().color(QPalette::Base), QColor(Qt::white));
    QCOMPARE(editor.foreColor(), QColor(Qt::black));
    const QPalette colors = editor.palette();
    QVERIFY(contrast(colors.color(QPalette::Highlight).rgb(), colors.color(QPalette::HighlightedText).rgb())
        >= 4.5);
}

/// Whatever font the theme has.
void DarkThemeTest::fontsStay()
{
    const QFont before = m_window->font();
    const QFont own = QApplication::font();
    const auto restore = qScopeGuard([&] { QApplication::setFont(own); });
    QApplication::setFont(QFont(u"Serif"_s, 30));
    settle();
    QCOMPARE(m_window->font().pointSizeF(), before.pointSizeF());
}

REGISTER_TEST(runWindowTest<DarkThemeTest>)
#include "darktheme_test.moc"
