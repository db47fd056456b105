#include "app/replacerun.h"
#include "app/searchrequest.h"
#include "editor/ctlediter.h"
#include "search/frmreplaceprogress.h"
#include "tests/seeds.h"
#include "tests/testprogram.h"
#include "tests/text/naivesearch.h"
#include "tests/text/textalphabet.h"
#include "tests/text/tinynodes.h"
#include "tests/text/undosteps.h"

#include <QSignalSpy>
#include <QTest>

namespace {

enum class Wrap { None, Window, Pixels };

/// Letters whose case is a trap, wide ones, pairs, line ends; few enough to make hits.
QStringList letters()
{
    return { QStringLiteral("a"), QStringLiteral("A"), QStringLiteral("a"), QStringLiteral("b"),
        QStringLiteral("k"), QStringLiteral("\u212a"), QStringLiteral("i"), QStringLiteral("\u0130"),
        QStringLiteral("\u00df"), QStringLiteral("s"), QStringLiteral("\uff21"), QStringLiteral("\uff41"),
        QStringLiteral("\u3042"), QStringLiteral("\u0301"), QStringLiteral("\U00010400"),
        QStringLiteral("\U00010428"), QStringLiteral("\t"), QStringLiteral("\n") };
}

QStringList fewLetters()
{
    return { QStringLiteral("a"), QStringLiteral("A"), QStringLiteral("\uff21"), QStringLiteral("\n") };
}

/// An editor, and the rules played on plain strings beside it.
class Pair {
public:
    Pair(quint32 seed, Wrap wrap, int columns, const QStringList &alphabet)
        : m_editor(&m_window)
        , m_random(seed, alphabet)
    {
        const int width = m_editor.fontMetrics().horizontalAdvance(u'a') * columns;
        m_window.resize(width + 30, 100);
        m_editor.resize(m_window.size());
        m_editor.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        const int inView = m_editor.viewport()->width() - m_editor.hMargin() - 2;
        m_editor.setWrapColumnOrWidth(wrap == Wrap::Window ? inView : width);
        m_editor.setWordWrap(wrap == Wrap::None ? QMultiLineEdit::NoWrap : QMultiLineEdit::FixedPixelWidth);
    }

    ctlEditer &editor() { return m_editor; }
    RandomText &random() { return m_random; }
    const NaiveEditor &naive() const { return *m_naive; }

    void setText(const QString &text)
    {
        TextStore::Builder builder(m_editor.layoutRule(), nodesOf(16));
        builder.append(QStringView(text));
        m_editor.setText(builder.finish());
        m_naive.emplace(m_editor.layoutRule(), text);
    }
    /// A text to look for, some of which are there.
    QString someText()
    {
        const QString &text = m_naive->model().text();
        QString find = m_random.text(1 + m_random.below(3));
        if (m_random.chance(2) && text.size() > 1)
            find = text.mid(m_random.below(text.size()), 1 + m_random.below(m_random.chance(4) ? 20 : 4));
        find.remove(u'\n');
        // Strings are of two minds about a text that begins or ends with half a pair.
        while (!find.isEmpty() && find.front().isLowSurrogate())
            find.remove(0, 1);
        while (!find.isEmpty() && find.back().isHighSurrogate())
            find.chop(1);
        return find;
    }
    void moveCursor()
    {
        for (const bool selects : { false, m_random.chance(2) }) {
            const qint64 row = m_random.below(qint64(m_naive->model().rows().size()) + 1);
            const RowCol place{ RowIndex(row), m_random.below(12) };
            m_editor.setCursorPosition(place, selects);
            m_naive->setCursor(place, selects);
        }
    }
    void search(bool forwards, int mode, bool cs, const QString &find, const QString &replace)
    {
        const auto sensitivity = cs ? Qt::CaseSensitive : Qt::CaseInsensitive;
        if (forwards)
            QCOMPARE(m_editor.searchForward(mode, cs, find, replace),
                m_naive->searchForward(mode, sensitivity, find, replace));
        else
            QCOMPARE(m_editor.searchBackward(mode, cs, find, replace),
                m_naive->searchBackward(mode, sensitivity, find, replace));
        compare();
    }
    /// Both replace all; gives the text before the first replacement and behind each one.
    QStringList replaceAll(bool cs, const QString &find, const QString &replace, bool speedUp)
    {
        const QStringList texts =
            m_naive->replaceAll(cs ? Qt::CaseSensitive : Qt::CaseInsensitive, find, replace);
        frmReplaceProgress progress(&m_window);
        if (speedUp)
            progress.slotClickHiSpeed();
        m_editor.setCursorPosition(0, 0);
        const SearchRequest request{ 1, cs, find, replace };
        const int count = ReplaceRun(m_editor, request, progress).run();
        [&] { QCOMPARE(count, texts.size() - 1); }();
        compare();
        return texts;
    }
    void compare()
    {
        m_editor.store().checkInvariants();
        QCOMPARE(m_editor.text(), m_naive->model().text());
        QCOMPARE(m_editor.numLines(), qint64(m_naive->model().rows().size()));
        QCOMPARE(m_editor.cursorPosition(), m_naive->cursor());
        QCOMPARE(m_editor.store().rowColAt(m_editor.anchorPlace()), m_naive->anchor());
    }

private:
    QWidget m_window;
    ctlEditer m_editor;
    RandomText m_random;
    std::optional<NaiveEditor> m_naive;
};

} // namespace

class ReplaceAllTest : public QObject {
    Q_OBJECT

private slots:
    void searches_data() { addRandomRows(); }
    void searches();
    void replacesAll_data() { addRandomRows(); }
    void replacesAll();
    void undoes_data();
    void undoes();
    void undoesInAnotherLayout();
    void tellsAvailabilityOnce();

private:
    static void addRandomRows();
};

void ReplaceAllTest::addRandomRows()
{
    QTest::addColumn<quint32>("seed");
    QTest::addColumn<int>("wrap");
    QTest::addColumn<int>("columns");
    QTest::addColumn<QStringList>("alphabet");

    quint32 seed = 1;
    const auto row = [&seed](const char *name, Wrap wrap, int columns) {
        for (const bool few : { false, true }) {
            const quint32 used = seedOr(seed++);
            QTest::addRow("%s, %d columns, %s letters, seed %u", name, columns, few ? "few" : "all", used)
                << used << int(wrap) << columns << (few ? fewLetters() : letters());
        }
    };
    row("not wrapped", Wrap::None, 10);
    for (const int columns : { 1, 2, 3, 5, 9 }) {
        row("wrapped in the window", Wrap::Window, columns);
        row("wrapped by pixels", Wrap::Pixels, columns);
    }
}

void ReplaceAllTest::searches()
{
    QFETCH(const quint32, seed);
    QFETCH(const int, wrap);
    QFETCH(const int, columns);
    QFETCH(const QStringList, alphabet);

    Pair pair(seed, Wrap(wrap), columns, alphabet);
    RandomText &random = pair.random();
    for (int round = 0; round < 12 && !QTest::currentTestFailed(); ++round) {
        pair.setText(random.text(random.below(80)));
        for (int step = 0; step < 40 && !QTest::currentTestFailed(); ++step) {
            if (random.chance(3))
                pair.moveCursor();
            const QString find = pair.someText();
            if (find.isEmpty())
                continue;
            const bool forwards = random.chance(2);
            const bool cs = random.chance(2);
            const int mode = random.chance(3) ? 1 : 0;
            const QString replace = random.text(random.below(4));
            for (qint64 times = 1 + random.below(3); times > 0; --times)
                pair.search(forwards, mode, cs, find, replace);
        }
    }
}

void ReplaceAllTest::replacesAll()
{
    QFETCH(const quint32, seed);
    QFETCH(const int, wrap);
    QFETCH(const int, columns);
    QFETCH(const QStringList, alphabet);

    Pair pair(seed, Wrap(wrap), columns, alphabet);
    RandomText &random = pair.random();
    for (int round = 0; round < 25 && !QTest::currentTestFailed(); ++round) {
        pair.setText(random.text(random.below(300)));
        pair.moveCursor();
        const QString find = pair.someText();
        if (find.isEmpty())
            continue;
        const QString replace = random.chance(3) ? find + random.text(2) : random.text(random.below(5));
        const QStringList texts = pair.replaceAll(random.chance(2), find, replace, random.chance(2));
        for (qsizetype i = texts.size(); i-- > 0 && !QTest::currentTestFailed();) {
            QCOMPARE(pair.editor().text(), texts.at(i));
            pair.editor().undo();
        }
        for (const QString &text : texts) {
            QCOMPARE(pair.editor().text(), text);
            pair.editor().redo();
        }
    }
}

void ReplaceAllTest::undoes_data()
{
    QTest::addColumn<int>("hits");
    QTest::addColumn<QString>("replace");

    for (const int hits : { 1, 255, 256, 257, 258, 600 }) {
        QTest::addRow("%d longer ones", hits) << hits << QStringLiteral("yyy");
        QTest::addRow("%d by nothing", hits) << hits << QString();
    }
}

/// The newest 256 steps are taken back one by one, but for the last of them, which is all the older ones.
void ReplaceAllTest::undoes()
{
    QFETCH(const int, hits);
    QFETCH(const QString, replace);

    Pair pair(1, Wrap::Pixels, 7, letters());
    pair.setText(QStringLiteral("a x \n").repeated(hits));
    const QStringList texts = pair.replaceAll(true, QStringLiteral("x"), replace, false);
    QCOMPARE(texts.size(), hits + 1);
    ctlEditer &editor = pair.editor();
    const int steps = qMin(hits, 256);
    QCOMPARE(undoSteps(editor.history()), steps);
    for (int round = 0; round < 2; ++round) {
        for (int step = 1; step <= steps; ++step) {
            editor.undo();
            QCOMPARE(editor.text(), texts.at(step < steps ? hits - step : 0));
        }
        QVERIFY(!editor.undoAvailable());
        for (int step = steps - 1; step >= 0; --step) {
            editor.redo();
            QCOMPARE(editor.text(), texts.at(hits - step));
        }
        QVERIFY(!editor.redoAvailable());
        QCOMPARE(editor.cursorOffset(), Offset(editor.text().size() - 2));
        editor.store().checkInvariants();
    }
}

/// The text before the oldest steps comes back laid out as the text is now.
void ReplaceAllTest::undoesInAnotherLayout()
{
    Pair pair(1, Wrap::Pixels, 7, letters());
    const QString text = QStringLiteral("a x \uff21\t").repeated(600);
    pair.setText(text);
    const QString replaced = pair.replaceAll(true, QStringLiteral("x"), QStringLiteral("yy"), false).last();
    ctlEditer &editor = pair.editor();
    editor.setWrapColumnOrWidth(editor.wrapColumnOrWidth() * 2);
    const auto compare = [&editor](const QString &expected) {
        editor.store().checkInvariants();
        ModelStore model(editor.layoutRule());
        model.setText(expected);
        QCOMPARE(editor.text(), expected);
        QCOMPARE(editor.numLines(), qint64(model.rows().size()));
        QCOMPARE(editor.cursorPosition().row, model.rowAt(editor.cursorOffset()));
    };
    while (editor.undoAvailable())
        editor.undo();
    compare(text);
    editor.setWrapColumnOrWidth(editor.wrapColumnOrWidth() / 3);
    while (editor.redoAvailable())
        editor.redo();
    compare(replaced);
}

void ReplaceAllTest::tellsAvailabilityOnce()
{
    Pair pair(1, Wrap::None, 80, letters());
    pair.setText(QStringLiteral("x\n").repeated(1000));
    const QSignalSpy undo(&pair.editor(), &QMultiLineEdit::undoAvailable);
    const QSignalSpy redo(&pair.editor(), &QMultiLineEdit::redoAvailable);
    const QSignalSpy copy(&pair.editor(), &QMultiLineEdit::copyAvailable);
    pair.replaceAll(true, QStringLiteral("x"), QStringLiteral("y"), false);
    QCOMPARE(undo.count(), 1);
    QCOMPARE(undo.first().first().toBool(), true);
    QCOMPARE(redo.count() + copy.count(), 0);
}

REGISTER_TEST(runWindowTest<ReplaceAllTest>)
#include "replaceall_test.moc"
