// Searches told by bytes, in a store of tiny leaves: forwards and backwards, with and without case, wrapped
// or not, beside the search of strings and the rules played on rows.

#include "fuzz/bytes.h"
#include "tests/text/drawnhits.h"
#include "tests/text/textalphabet.h"
#include "tests/text/tinynodes.h"

using namespace Qt::StringLiterals;

namespace {

/// As ordinary as they come, so that much is alike; wide and narrow ones.
QStringList plainLetters()
{
    return { u"a"_s, u"A"_s, u"b"_s, u"a"_s, u"\u3042"_s, u"\U0001f600"_s, u"\n"_s };
}

QString letters(Bytes &bytes, const QStringList &alphabet, qint64 most)
{
    QString text;
    for (qint64 count = bytes.below(most + 1); count > 0 && !bytes.atEnd(); --count)
        text += alphabet.at(bytes.below(alphabet.size()));
    return text;
}

/// Now and then a part many times over: what a search takes longest for.
QString textOf(Bytes &bytes, const QStringList &alphabet)
{
    QString text = letters(bytes, alphabet, 60);
    for (qint64 parts = bytes.below(4); parts > 0 && text.size() < 20000; --parts) {
        const qint64 times = 1 + bytes.below(40);
        text += letters(bytes, alphabet, 20).repeated(times * (bytes.below(8) == 0 ? 16 : 1));
    }
    return text;
}

/// A part of the text, perhaps with its case turned or something behind it; or any letters.
QString wantedOf(Bytes &bytes, const QString &text, const QStringList &alphabet)
{
    QString wanted = letters(bytes, alphabet, 5);
    const qint64 kind = bytes.below(4);
    if (kind > 0) {
        const qint64 from = bytes.below(text.size() + 1);
        const qint64 length = bytes.below(8) == 0 ? 16 * bytes.below(256) : bytes.below(20);
        wanted.prepend(text.mid(from, length));
    }
    if (kind == 2)
        wanted = wanted.toUpper();
    if (kind == 3)
        wanted = wanted.toLower();
    wanted.remove(u'\n');
    // Strings are of two minds about a text that begins with half a pair: it depends on the lengths.
    while (wanted.size() > 1 && wanted.front().isLowSurrogate())
        wanted.remove(0, 1);
    return wanted;
}

TextStore storeOf(const QString &text, const LayoutRule &rule, int leafUnits)
{
    TextStore store(rule, nodesOf(leafUnits));
    store.replace({}, 0, text);
    return store;
}

/// Against the search of strings. Their own search backwards folds halves of pairs; the last hit forwards is
/// the measure.
void compareWithString(Bytes &bytes)
{
    static const QStringList alphabets[] = { trickyLetters(), hurtingCharacters(), plainLetters() };
    const QStringList &alphabet = alphabets[bytes.below(3)];
    const auto cs = bytes.below(2) == 0 ? Qt::CaseSensitive : Qt::CaseInsensitive;
    const QString text = textOf(bytes, alphabet);
    const QString wanted = wantedOf(bytes, text, alphabet);
    const TextStore store = storeOf(text, {}, int(8 + bytes.below(200)));
    const TextPattern pattern(wanted, cs);
    for (qint64 from : { qint64(0), bytes.below(text.size() + 1), text.size() }) {
        const qint64 first = wanted.isEmpty() ? -1 : text.indexOf(wanted, from, cs);
        require(pattern.indexIn(store, { Offset(from), store.end() }).value_or(Offset(-1)) == Offset(first));
        qint64 last = -1;
        for (qint64 at = -1; !wanted.isEmpty() && (at = text.indexOf(wanted, at + 1, cs)) >= 0 && at <= from;)
            last = at;
        require(pattern.lastIndexIn(store, { {}, Offset(from) + 1 }).value_or(Offset(-1)) == Offset(last));
    }
}

/// Against the rules, row by row.
void compareWithRows(Bytes &bytes)
{
    static const AdvanceTable advances(hurtingWidth);
    const LayoutRule rule{ &advances, 4 * subpixelsPerPixel, bytes.below(9) * subpixelsPerPixel };
    const auto cs = bytes.below(2) == 0 ? Qt::CaseSensitive : Qt::CaseInsensitive;
    const QString text = letters(bytes, plainLetters(), 60);
    const QString wanted = letters(bytes, plainLetters(), 9).remove(u'\n');
    if (wanted.isEmpty())
        return;
    const TextStore store = storeOf(text, rule, 8);
    ModelStore model(rule);
    model.setText(text);
    const NaiveSearch naive(model);
    const TextPattern pattern(wanted, cs);
    const RowIndex row(bytes.below(store.rowCount()));
    for (qint64 column = 0; column <= store.row(row).length; ++column) {
        const CursorPlace place = store.placeAt({ row, column });
        require(drawn(store, findHit(store, pattern, SearchDirection::Forward, place))
            == drawn(model, naive.forward(wanted, cs, { row, column })));
        require(drawn(store, findHit(store, pattern, SearchDirection::Backward, place))
            == drawn(model, naive.backward(wanted, cs, { row, column })));
        if (place.offset < store.end())
            require(drawn(store, findHit(store, pattern, SearchDirection::Forward, nextColumn(store, place)))
                == drawn(model, naive.forward(wanted, cs, { row, column + 1 })));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Bytes bytes(data, size);
    if (bytes.below(2) == 0)
        compareWithString(bytes);
    else
        compareWithRows(bytes);
    return 0;
}
