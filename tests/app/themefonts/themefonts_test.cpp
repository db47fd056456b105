#include "tests/app/forms.h"
#include "tests/app/testwindow.h"
#include "tests/filedialog/formtest.h"
#include "tests/testprogram.h"

#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QToolTip>
#include <QtPlugin>

#include <qpa/qplatformtheme.h>
#include <qpa/qplatformthemeplugin.h>
#include <qpa/qwindowsysteminterface.h>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

constexpr int themeSize = 24;

/// A desktop's theme that has a font for every kind of widget.
class FontTheme : public QPlatformTheme {
public:
    const QFont *font(Font type) const override
    {
        static const QFont system(u"Loma"_s, themeSize);
        static const QFont other(u"Lohit Devanagari"_s, themeSize + 1);
        return type == SystemFont ? &system : &other;
    }
};

/// Kinds of widgets that themes have fonts for.
constexpr const char *kinds[] = { "QWidget", "QMenu", "QMenuBar", "QMessageBox", "QLabel", "QTipLabel",
    "QStatusBar", "QPushButton", "QCheckBox", "QToolButton", "QAbstractItemView", "QListView", "QHeaderView",
    "QComboMenuItem", "QComboLineEdit", "QSmallFont", "QMiniFont", "QTabBar", "QGroupBox", "QLineEdit" };

} // namespace

class FontThemePlugin : public QPlatformThemePlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QPlatformThemeFactoryInterface_iid FILE "themefonts.json")
public:
    QPlatformTheme *create(const QString & /*key*/, const QStringList & /*parameters*/) override
    {
        return new FontTheme;
    }
};

using Deed = std::function<void()>;

/// The application's font where the desktop's theme has fonts of its own.
class ThemeFontsTest : public QObject {
    Q_OBJECT

private slots:
    void init() { resetSettings(); }
    void fontStays_data();
    void fontStays();
    void fontIsTheApplicationsAgainAfterwards();
};

void ThemeFontsTest::fontStays_data()
{
    QTest::addColumn<bool>("isVga");
    QTest::addColumn<Deed>("deed");
    const QFont fromDesktop(u"Lohit Devanagari"_s, themeSize);
    for (const bool isVga : { false, true }) {
        const char *const size = isVga ? "VGA" : "small";
        QTest::addRow("at the start, %s", size) << isVga << Deed([] {});
        QTest::addRow("a font for everything, %s", size)
            << isVga << Deed([=] { QApplication::setFont(fromDesktop); });
        QTest::addRow("a font for menus, %s", size)
            << isVga << Deed([=] { QApplication::setFont(fromDesktop, "QMenu"); });
        QTest::addRow("a font for labels, %s", size)
            << isVga << Deed([=] { QApplication::setFont(fromDesktop, "QLabel"); });
        QTest::addRow("a font for buttons, %s", size)
            << isVga << Deed([=] { QApplication::setFont(fromDesktop, "QAbstractButton"); });
        QTest::addRow("another theme, %s", size) << isVga << Deed([] {
            QWindowSystemInterface::handleThemeChange<QWindowSystemInterface::SynchronousDelivery>(nullptr);
        });
    }
}

void ThemeFontsTest::fontStays()
{
    QFETCH(bool, isVga);
    QFETCH(Deed, deed);
    QApplication::setFont(QFont(u"Loma"_s, themeSize)); // as at the program's start
    if (isVga)
        qputenv("QWS_DISPLAY", "QVFb:Vga:0");
    TestWindow window;
    QVERIFY(window.open());
    const auto options = dialogOf(Form::OptionsView1, &window);
    options->show();
    deed();
    QMenu later;
    later.addAction(u"New"_s);
    later.popup({});
    QCOMPARE(later.font(), QApplication::font());
    qunsetenv("QWS_DISPLAY");
    const int size = isVga ? 18 : 10;
    QCOMPARE(QApplication::font().pointSize(), size);
    QCOMPARE(QApplication::font().family(), u"Loma"_s);
    for (const char *const kind : kinds)
        QVERIFY2(QApplication::font(kind) == QApplication::font(), kind);
    QList<QWidget *> widgets{ window.findChild<QMenuBar *>(), window.menu(MenuId::File), window.tabBar(),
        options.get() };
    widgets << options->findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        QVERIFY2(widget->font().pointSize() == size && widget->font().family() == u"Loma",
            widget->metaObject()->className());
    }
}

/// Nothing holds on to it once the window is gone.
void ThemeFontsTest::fontIsTheApplicationsAgainAfterwards()
{
    {
        TestWindow window;
        QVERIFY(window.open());
    }
    const QFont other(u"Loma"_s, themeSize);
    QApplication::setFont(other);
    QCOMPARE(QApplication::font(), other);
}

namespace {

int run(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORMTHEME", "fonts");
    return runFormTest<ThemeFontsTest>(argc, argv);
}

} // namespace

REGISTER_TEST(run)

#include "themefonts_test.moc"

Q_IMPORT_PLUGIN(FontThemePlugin)
