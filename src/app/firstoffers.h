#pragma once

#include "platform/desktoplocale.h"

#include <QObject>

class DocumentArea;

/// What the program offers when it starts for the first time: the languages of the interface where the
/// desktop speaks another one, and UTF-8 with LF for new documents where the desktop writes that. Each is
/// offered once; whoever says nothing keeps the program as it is. One that other notices about the program
/// cover until the end is offered again.
class FirstOffers : public QObject {
    Q_OBJECT
public:
    FirstOffers(DocumentArea &documents, DesktopLocale desktop);

    /// Puts the first of them that was not made before among the notices, the next one behind its answer.
    void make();

signals:
    /// Of the enumeration Language.
    void languageChosen(int language);

private:
    bool isLanguageWanted() const;
    bool isUtf8Wanted() const;
    void offerLanguages();
    void useLanguage(int language);
    void offerUtf8();
    void useUtf8();
    void countShown();

    DocumentArea &m_documents;
    const DesktopLocale m_desktop;
};
