#include "app/keymap.h"

#include "app/frmmain.h"
#include "app/keystext.h"
#include "settings/moresettings.h"
#include "tests/testprogram.h"

#include <QKeyEvent>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype headOfTable = 2; ///< rows above those of the keys

struct Row {
    const char *name;
    int key;
    int deviceKey;
    CommandSlot slot;
};

// In the order of the map, without its rows for Tab, F6 and F10.
const Row rows[] = {
    { "Ctrl+N search", Qt::Key_N, 0x2019, &frmMain::slotCmdViewSearch },
    { "Ctrl+M replace", Qt::Key_M, 0x201A, &frmMain::slotCmdViewReplace },
    { "Ctrl+1 search before", Qt::Key_1, 0x200F, &frmMain::slotCmdViewSrchBefo },
    { "Ctrl+2 search next", Qt::Key_2, 0x2010, &frmMain::slotCmdViewSrchNext },
    { "Ctrl+5 last edited position", Qt::Key_5, 0x201B, &frmMain::slotCmdViewLastEdit },
    { "Ctrl+O open", Qt::Key_O, 0x2015, &frmMain::slotCmdFileOpen },
    { "Ctrl+S save", Qt::Key_S, 0x2018, qOverload<>(&frmMain::slotCmdFileSave) },
    { "Ctrl+Q quit", Qt::Key_Q, 0x2014, &frmMain::slotCmdFileQuitNoSave },
    { "Ctrl+Z undo", Qt::Key_Z, 0, &frmMain::slotCmdEditUndo },
    { "Ctrl+X cut", Qt::Key_X, 0, &frmMain::slotCmdEditCut },
    { "Ctrl+C copy", Qt::Key_C, 0, &frmMain::slotCmdEditCopy },
    { "Ctrl+V paste", Qt::Key_V, 0, &frmMain::slotCmdEditPast },
    { "Ctrl+A select all", Qt::Key_A, 0x2017, &frmMain::slotCmdEditSelAll },
};

QList<CommandSlot> commandsFor(int key, Qt::KeyboardModifiers modifiers, const QString &text = {})
{
    return commandsForKey(QKeyEvent(QEvent::KeyPress, key, modifiers, text));
}

} // namespace

/// The window's key map, row by row.
class KeyMapTest : public QObject {
    Q_OBJECT

private slots:
    void hasTheseRowsInOrder();
    void controlIsExact_data();
    void controlIsExact();
    void deviceKeysCountWithoutText_data();
    void deviceKeysCountWithoutText();
    void tabs_data();
    void tabs();
    void f6();
    void menuOfTheTab();
    void guide();
    void knownKeys_data();
    void knownKeys();
    void keysAreUsedOnce();
    void everyKeyIsTold();
    void wheelIsToldWhereItSizesTheText();
    void digitsThatNeedShift_data();
    void digitsThatNeedShift();
    void otherKeysDoNothing_data();
    void otherKeysDoNothing();
};

void KeyMapTest::hasTheseRowsInOrder()
{
    QList<KeyBinding> bindings(keyBindings().begin(), keyBindings().end());
    const auto isTab = [](const KeyBinding &binding) { return binding.key == Qt::Key_Tab; };
    QCOMPARE(std::find_if(bindings.begin(), bindings.end(), isTab) - bindings.begin(), 5);
    QCOMPARE(bindings.removeIf(isTab), 2);
    QCOMPARE(bindings.takeAt(std::size(rows)).key, int(Qt::Key_F6));
    for (int way = 0; way < 2; ++way)
        QCOMPARE(bindings.takeAt(std::size(rows)).key, int(Qt::Key_F10));
    QVERIFY(size_t(bindings.size()) > std::size(rows));
    for (qsizetype i = 0; i < qsizetype(std::size(rows)); ++i) {
        QCOMPARE(bindings.at(i).key, rows[i].key);
        QCOMPARE(bindings.at(i).deviceKey, rows[i].deviceKey);
        QVERIFY2(bindings.at(i).slot == rows[i].slot, rows[i].name);
    }
}

void KeyMapTest::controlIsExact_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<CommandSlot>("slot");
    for (const Row &row : rows)
        QTest::newRow(row.name) << row.key << row.slot;
}

void KeyMapTest::controlIsExact()
{
    QFETCH(int, key);
    QFETCH(CommandSlot, slot);
    const QList<CommandSlot> once{ slot };
    QCOMPARE(commandsFor(key, Qt::ControlModifier), once);
    QCOMPARE(commandsFor(key, Qt::ControlModifier, u"\x1"_s), once);
    QCOMPARE(commandsFor(key, Qt::ControlModifier | Qt::KeypadModifier), once);
    const Qt::KeyboardModifiers others[] = { Qt::NoModifier, Qt::ShiftModifier, Qt::KeypadModifier,
        Qt::AltModifier, Qt::ControlModifier | Qt::ShiftModifier, Qt::ControlModifier | Qt::AltModifier,
        Qt::ControlModifier | Qt::MetaModifier };
    const Qt::KeyboardModifiers ofSaveAs = Qt::ControlModifier | Qt::ShiftModifier;
    for (const Qt::KeyboardModifiers modifiers : others)
        QCOMPARE(commandsFor(key, modifiers).isEmpty(), key != Qt::Key_S || modifiers != ofSaveAs);
}

void KeyMapTest::deviceKeysCountWithoutText_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<CommandSlot>("slot");
    for (const Row &row : rows) {
        if (row.deviceKey)
            QTest::newRow(row.name) << row.deviceKey << row.slot;
    }
}

void KeyMapTest::deviceKeysCountWithoutText()
{
    QFETCH(int, key);
    QFETCH(CommandSlot, slot);
    const QList<CommandSlot> once{ slot };
    QCOMPARE(commandsFor(key, Qt::NoModifier), once);
    QCOMPARE(commandsFor(key, Qt::ShiftModifier), once);
    QVERIFY(commandsFor(key, Qt::NoModifier, QString(QChar(key))).isEmpty());
}

void KeyMapTest::tabs_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<QList<CommandSlot>>("commands");
    using Modifiers = Qt::KeyboardModifiers;
    const QList<CommandSlot> next{ &frmMain::slotCmdViewWinNext };
    const QList<CommandSlot> previous{ &frmMain::slotCmdViewWinPrev };
    const QList<CommandSlot> none;
    const Modifiers control = Qt::ControlModifier;
    QTest::newRow("Ctrl+Tab") << int(Qt::Key_Tab) << control << next;
    QTest::newRow("Ctrl+Shift+Tab") << int(Qt::Key_Tab) << (control | Qt::ShiftModifier) << previous;
    QTest::newRow("Ctrl+Shift+Backtab") << int(Qt::Key_Backtab) << (control | Qt::ShiftModifier) << previous;
    QTest::newRow("Ctrl+Backtab") << int(Qt::Key_Backtab) << control << previous;
    QTest::newRow("Ctrl+Alt+Tab") << int(Qt::Key_Tab) << (control | Qt::AltModifier) << next;
    QTest::newRow("Ctrl+Alt+Shift+Tab")
        << int(Qt::Key_Tab) << (control | Qt::AltModifier | Qt::ShiftModifier) << previous;
    QTest::newRow("Tab") << int(Qt::Key_Tab) << Modifiers() << none;
    QTest::newRow("Shift+Tab") << int(Qt::Key_Backtab) << Modifiers(Qt::ShiftModifier) << none;
}

void KeyMapTest::tabs()
{
    QFETCH(int, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QTEST(commandsFor(key, modifiers, u"\t"_s), "commands");
}

void KeyMapTest::f6()
{
    const QList<CommandSlot> notice{ &frmMain::slotEtcNotice };
    QCOMPARE(commandsFor(Qt::Key_F6, {}), notice);
    for (const Qt::KeyboardModifier modifier : { Qt::ShiftModifier, Qt::ControlModifier, Qt::AltModifier })
        QVERIFY(commandsFor(Qt::Key_F6, modifier).isEmpty());
}

/// "More options", which has all switches, is in it: so it does not go with the keys of other programs.
void KeyMapTest::menuOfTheTab()
{
    const QList<CommandSlot> menu{ &frmMain::slotEtcTabMenu };
    for (const int known : { 1, 0 }) {
        moreSettings().KnownKeys = known;
        QCOMPARE(commandsFor(Qt::Key_F10, Qt::ControlModifier), menu);
        QCOMPARE(commandsFor(Qt::Key_F10, Qt::ControlModifier | Qt::ShiftModifier), menu);
    }
    QVERIFY(commandsFor(Qt::Key_F10, {}).isEmpty());
    moreSettings() = {};
}

/// It tells which keys are on, and nothing else opens it.
void KeyMapTest::guide()
{
    const QList<CommandSlot> guide{ &frmMain::slotEtcKeys };
    QCOMPARE(commandsFor(Qt::Key_F1, {}), guide);
    moreSettings().KnownKeys = 0;
    QCOMPARE(commandsFor(Qt::Key_F1, {}), guide);
    moreSettings() = {};
}

void KeyMapTest::knownKeys_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<CommandSlot>("slot");
    const auto row = [](const char *name, int key, Qt::KeyboardModifiers modifiers, CommandSlot slot) {
        QTest::newRow(name) << key << modifiers << slot;
    };
    const Qt::KeyboardModifiers control = Qt::ControlModifier;
    const Qt::KeyboardModifiers controlShift = control | Qt::ShiftModifier;
    row("Ctrl+F", Qt::Key_F, control, &frmMain::slotCmdViewSearch);
    row("Ctrl+H", Qt::Key_H, control, &frmMain::slotCmdViewReplace);
    row("F3", Qt::Key_F3, {}, &frmMain::slotCmdViewSrchNext);
    row("Shift+F3", Qt::Key_F3, Qt::ShiftModifier, &frmMain::slotCmdViewSrchBefo);
    row("Ctrl+G", Qt::Key_G, control, &frmMain::slotCmdViewGyoJump);
    row("Ctrl+W", Qt::Key_W, control, &frmMain::slotCmdFileCloseTab);
    row("Ctrl+T", Qt::Key_T, control, &frmMain::slotCmdFileNew);
    row("Ctrl+PageUp", Qt::Key_PageUp, control, &frmMain::slotCmdViewWinPrev);
    row("Ctrl+PageDown", Qt::Key_PageDown, control, &frmMain::slotCmdViewWinNext);
    row("Ctrl+Shift+S", Qt::Key_S, controlShift, qOverload<>(&frmMain::slotCmdFileSaveAs));
    row("Ctrl++", Qt::Key_Plus, control, &frmMain::slotEtcTextLarger);
    row("Ctrl++ behind Shift", Qt::Key_Plus, controlShift, &frmMain::slotEtcTextLarger);
    row("Ctrl++ of the keypad", Qt::Key_Plus, control | Qt::KeypadModifier, &frmMain::slotEtcTextLarger);
    row("Ctrl+=", Qt::Key_Equal, control, &frmMain::slotEtcTextLarger);
    row("Ctrl+-", Qt::Key_Minus, control, &frmMain::slotEtcTextSmaller);
    row("Ctrl+0", Qt::Key_0, control, &frmMain::slotEtcTextAsUsual);
    row("F10", Qt::Key_F10, {}, &frmMain::slotEtcMenus);
    row("F11", Qt::Key_F11, {}, &frmMain::slotCmdViewFull);
}

void KeyMapTest::knownKeys()
{
    QFETCH(int, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QFETCH(CommandSlot, slot);
    QCOMPARE(commandsFor(key, modifiers), QList<CommandSlot>{ slot });
    QVERIFY(commandsFor(key, modifiers | Qt::AltModifier).isEmpty());
    QVERIFY(commandsFor(key, modifiers | Qt::MetaModifier).isEmpty());
}

void KeyMapTest::keysAreUsedOnce()
{
    for (const KeyBinding &binding : keyBindings())
        QCOMPARE(commandsFor(binding.key, binding.modifiers).size(), 1);
}

/// And its command is not named twice.
void KeyMapTest::everyKeyIsTold()
{
    const QStringList lines = keysTable().split(u'\n', Qt::SkipEmptyParts).sliced(headOfTable);
    for (const KeyBinding &binding : keyBindings()) {
        const QString name = QKeySequence(QKeyCombination(binding.modifiers, Qt::Key(binding.key)))
                                 .toString(QKeySequence::NativeText);
        const auto tells = [&name](const QString &line) {
            return line.section(u'|', 1, 1).trimmed().split(u", "_s).contains(name);
        };
        QCOMPARE(std::count_if(lines.begin(), lines.end(), tells), 1);
    }
    QVERIFY(lines.contains(u"| Ctrl+N, Ctrl+F | Search |"_s));
    QVERIFY(lines.contains(u"| Ctrl+1, Shift+F3 | Search Before |"_s));
    QVERIFY(lines.contains(u"| Ctrl+Y | Redo |"_s));
    QSet<QString> labels;
    for (const QString &line : lines)
        labels << line.section(u'|', 2);
    QCOMPARE(labels.size(), lines.size());
}

void KeyMapTest::wheelIsToldWhereItSizesTheText()
{
    const QString line = u"| Ctrl+Wheel | Size of the text |"_s;
    QVERIFY(keysTable().split(u'\n').contains(line));
    moreSettings().WheelTextSize = 0;
    QVERIFY(!keysTable().contains(line));
    moreSettings() = {};
}

void KeyMapTest::digitsThatNeedShift_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<int>("scanCode"); // 10 is the key "1"
    QTest::addColumn<QList<CommandSlot>>("commands");
    using Modifiers = Qt::KeyboardModifiers;
    const Modifiers control = Qt::ControlModifier;
    const Modifiers controlShift = control | Qt::ShiftModifier;
    const QList<CommandSlot> before{ &frmMain::slotCmdViewSrchBefo };
    const QList<CommandSlot> next{ &frmMain::slotCmdViewSrchNext };
    const QList<CommandSlot> lastEdit{ &frmMain::slotCmdViewLastEdit };
    const QList<CommandSlot> search{ &frmMain::slotCmdViewSearch };
    const QList<CommandSlot> none;
    QTest::newRow("French 1") << int(Qt::Key_Ampersand) << control << 10 << before;
    QTest::newRow("French 2") << int(Qt::Key_Eacute) << control << 11 << next;
    QTest::newRow("French 5") << int(Qt::Key_ParenLeft) << control << 14 << lastEdit;
    QTest::newRow("French 3") << int(Qt::Key_QuoteDbl) << control << 12 << none;
    const QList<CommandSlot> usual{ &frmMain::slotEtcTextAsUsual };
    QTest::newRow("French 0") << int(Qt::Key_Agrave) << control << 19 << usual;
    QTest::newRow("French 1 by Shift") << int(Qt::Key_1) << controlShift << 10 << before;
    QTest::newRow("French 2 by Shift") << int(Qt::Key_2) << controlShift << 11 << next;
    QTest::newRow("French 3 by Shift") << int(Qt::Key_3) << controlShift << 12 << none;
    QTest::newRow("a digit with Shift from no place") << int(Qt::Key_2) << controlShift << 0 << none;
    QTest::newRow("French 0 by Shift") << int(Qt::Key_0) << controlShift << 19 << usual;
    QTest::newRow("the keypad's 2 with Shift")
        << int(Qt::Key_2) << (controlShift | Qt::KeypadModifier) << 88 << none;
    QTest::newRow("without Ctrl") << int(Qt::Key_Ampersand) << Modifiers() << 10 << none;
    QTest::newRow("the sign with Shift") << int(Qt::Key_Ampersand) << controlShift << 10 << none;
    QTest::newRow("with Alt") << int(Qt::Key_Ampersand) << (control | Qt::AltModifier) << 10 << none;
    QTest::newRow("1 itself") << int(Qt::Key_1) << control << 10 << before;
    QTest::newRow("another digit in its place") << int(Qt::Key_3) << control << 10 << none;
    QTest::newRow("2 in the place of 1") << int(Qt::Key_2) << control << 10 << next;
    QTest::newRow("a key with a row in its place") << int(Qt::Key_N) << control << 10 << search;
    QTest::newRow("the sign elsewhere") << int(Qt::Key_Ampersand) << control << 61 << none;
    QTest::newRow("left of the digits") << int(Qt::Key_Escape) << control << 9 << none;
    QTest::newRow("right of the digits") << int(Qt::Key_ParenRight) << control << 20 << none;
    QTest::newRow("key without a place") << int(Qt::Key_Ampersand) << control << 0 << none;
}

void KeyMapTest::digitsThatNeedShift()
{
    QFETCH(int, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QFETCH(int, scanCode);
    const QKeyEvent press(QEvent::KeyPress, key, modifiers, quint32(scanCode), 0, 0);
    QTEST(commandsForKey(press), "commands");
}

void KeyMapTest::otherKeysDoNothing_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("Escape") << int(Qt::Key_Escape);
    QTest::newRow("Ctrl+3") << int(Qt::Key_3);
    QTest::newRow("Ctrl+Y") << int(Qt::Key_Y);
    QTest::newRow("the code between two device keys") << 0x2016;
    QTest::newRow("no key") << 0;
}

void KeyMapTest::otherKeysDoNothing()
{
    QFETCH(int, key);
    QVERIFY(commandsFor(key, Qt::ControlModifier).isEmpty());
    QVERIFY(commandsFor(key, Qt::NoModifier).isEmpty());
}

REGISTER_TEST(runCoreTest<KeyMapTest>)
#include "keymap_test.moc"
