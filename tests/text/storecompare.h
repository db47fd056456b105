#pragma once

#include "tests/text/modelstore.h"
#include "tests/text/textalphabet.h"
#include "tests/text/tinynodes.h"
#include "text/textstore.h"

#include <QTest>

enum class Widths { None, Hurting, FixedPitch };

inline const AdvanceTable *tableFor(Widths widths)
{
    static const AdvanceTable hurting(hurtingWidth);
    static const AdvanceTable fixedPitch(fixedPitchWidth);
    return widths == Widths::None ? nullptr : widths == Widths::Hurting ? &hurting : &fixedPitch;
}

inline LayoutRule ruleOf(Widths widths, Subpixels limitPixels, Subpixels tabPixels = 8)
{
    return { tableFor(widths), tabPixels * subpixelsPerPixel, limitPixels * subpixelsPerPixel };
}

inline TextStore storeOf(const QString &text, const LayoutRule &rule = {}, const NodeSizes &sizes = {})
{
    TextStore::Builder builder(rule, sizes);
    builder.append(QStringView(text));
    return builder.finish();
}

/// The rows, "/" for a wrap and "|" for a line end.
inline QString drawRows(const TextStore &store)
{
    QString drawn;
    for (RowIndex row; row <= store.lastRow(); ++row) {
        const TextStore::Row place = store.row(row);
        drawn += store.text(place.start, place.length);
        if (row < store.lastRow())
            drawn += place.endsLine ? u'|' : u'/';
    }
    return drawn;
}

inline void compareRow(const TextStore::Row &actual, const TextStore::Row &expected)
{
    QCOMPARE(actual.start, expected.start);
    QCOMPARE(actual.length, expected.length);
    QCOMPARE(actual.endsLine, expected.endsLine);
}

inline void compareOffset(const TextStore &store, const ModelStore &model, Offset offset)
{
    const RowIndex row = model.rowAt(offset);
    const RowCol place{ row, offset - model.row(row).start };
    QCOMPARE(store.rowColAt(offset).row, place.row);
    QCOMPARE(store.rowColAt(offset).column, place.column);
    const LineIndex line = model.lineAt(offset);
    QCOMPARE(store.lineAt(offset), line);
    QCOMPARE(store.lineStart(line), model.lineStart(line));
    QCOMPARE(store.lineEnd(line), model.lineEnd(line));
    QCOMPARE(rowOfLine(store, line), model.rowAt(model.lineStart(line)));
    QCOMPARE(store.placeAt(place).offset, offset);
    QCOMPARE(store.xAt(place), model.xAt(place));
    if (offset < model.end())
        QCOMPARE(store.at(offset), model.text().at(offset.value()).unicode());
}

inline void compareRowAt(const TextStore &store, const ModelStore &model, RowIndex row, Subpixels x)
{
    const TextStore::Row expected = model.row(row);
    compareRow(store.row(row), expected);
    QCOMPARE(lineOfRow(store, row), model.lineAt(expected.start));
    QCOMPARE(store.columnAt(row, x), model.columnAt(row, x));
}

inline void compareWidest(const TextStore &store, const ModelStore &model)
{
    const Subpixels exact = model.widestRow();
    if (model.layoutRule().limit == 0)
        QCOMPARE(store.widestRow(), exact);
    QVERIFY(store.widestRow() >= exact);
    QVERIFY(store.widestRow() <= qMax(exact, qMax(model.layoutRule().limit, model.layoutRule().tabStop)));
}

inline void compareTotals(const TextStore &store, const ModelStore &model)
{
    store.checkInvariants();
    QCOMPARE(store.text(), model.text());
    QCOMPARE(store.length(), model.length());
    QCOMPARE(store.lineCount(), model.lineCount());
    QCOMPARE(store.rowCount(), qint64(model.rows().size()));
    compareWidest(store, model);
}

/// Everything a store can be asked, against the model, at some places.
inline void compareSome(const TextStore &store, const ModelStore &model, RandomText &random, int probes)
{
    compareTotals(store, model);
    for (int probe = 0; probe < probes && !QTest::currentTestFailed(); ++probe) {
        compareOffset(store, model, Offset(random.below(model.length() + 1)));
        const RowIndex row(random.below(model.rows().size()));
        compareRowAt(store, model, row, random.below(Subpixels{ 20 } * subpixelsPerPixel) - 10);
    }
    compareOffset(store, model, model.end());
}

inline void compareAll(const TextStore &store, const ModelStore &model)
{
    compareTotals(store, model);
    for (Offset offset; offset <= model.end(); ++offset)
        compareOffset(store, model, offset);
    for (RowIndex row; row <= model.lastRow(); ++row) {
        for (Subpixels x = -64; x < 768; x += 32)
            compareRowAt(store, model, row, x);
    }
}
