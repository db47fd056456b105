#pragma once

#include "app/frmguide.h"
#include "app/frmrecovery.h"
#include "filedialog/frmfiledialog.h"
#include "options/frmmoreoptions.h"
#include "options/frmoption.h"
#include "search/frmjumpto.h"
#include "search/frmreplaceprogress.h"
#include "search/frmsearchdialog.h"

#include <QTabWidget>

#include <memory>
#include <utility>

/// The windows of the program, for tests that look at each of them in each language.
enum class Form {
    Main,
    Open,
    SaveAs,
    OptionsView1,
    OptionsView2,
    OptionsDetail,
    MoreOptions,
    Search,
    Replace,
    Progress,
    Jump,
    Recovery,
    Guide
};

inline constexpr std::pair<Form, const char *> forms[] = { { Form::Main, "main" }, { Form::Open, "open" },
    { Form::SaveAs, "save as" }, { Form::OptionsView1, "options view1" },
    { Form::OptionsView2, "options view2" }, { Form::OptionsDetail, "options detail" },
    { Form::MoreOptions, "more options" }, { Form::Search, "search" }, { Form::Replace, "replace" },
    { Form::Progress, "progress" }, { Form::Jump, "jump" }, { Form::Recovery, "recovery" },
    { Form::Guide, "guide" } };
inline constexpr std::pair<int, const char *> languages[] = { { 0, "English" }, { 1, "Japanese" },
    { 2, "French" } };

inline std::unique_ptr<QWidget> optionsAt(QWidget *parent, int page)
{
    auto options = std::make_unique<frmOption>(parent);
    options->findChild<QTabWidget *>()->setCurrentIndex(page);
    return options;
}

inline std::unique_ptr<QWidget> searchIn(QWidget *parent, int mode)
{
    auto search = std::make_unique<frmSearchDialog>(parent);
    search->searchMode = mode;
    return search;
}

inline std::unique_ptr<QWidget> progressIn(QWidget *parent)
{
    auto progress = std::make_unique<frmReplaceProgress>(parent);
    progress->setCount(1234567);
    return progress;
}

inline std::unique_ptr<QWidget> recoveryIn(QWidget *parent)
{
    const QDateTime time(QDate(2026, 12, 31), QTime(23, 59, 59));
    const QList<UnsavedText> texts{ { QStringLiteral("a.txt"), QStringLiteral("/folder/"), time, 1234567 },
        { QStringLiteral("b.txt"), QString(), time, -1 } };
    return std::make_unique<frmRecovery>(parent, texts);
}

/// The form shown over `parent`; null for the main window, which is the parent itself.
inline std::unique_ptr<QWidget> dialogOf(Form form, QWidget *parent)
{
    switch (form) {
    case Form::Main:
        return nullptr;
    case Form::Open:
        return std::make_unique<frmFileDialog>(parent, frmFileDialog::Open, QStringLiteral("/"), QString());
    case Form::SaveAs:
        return std::make_unique<frmFileDialog>(
            parent, frmFileDialog::SaveAs, QStringLiteral("/"), QStringLiteral("a.txt"));
    case Form::OptionsView1:
        return optionsAt(parent, 0);
    case Form::OptionsView2:
        return optionsAt(parent, 1);
    case Form::OptionsDetail:
        return optionsAt(parent, 2);
    case Form::MoreOptions:
        return std::make_unique<frmMoreOptions>(parent);
    case Form::Search:
    case Form::Replace:
        return searchIn(parent, form == Form::Replace ? 1 : 0);
    case Form::Progress:
        return progressIn(parent);
    case Form::Jump:
        return std::make_unique<frmJumpTo>(parent);
    case Form::Recovery:
        return recoveryIn(parent);
    case Form::Guide:
        return std::make_unique<frmGuide>(parent);
    }
    Q_UNREACHABLE();
}
