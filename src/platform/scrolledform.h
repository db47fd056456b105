#pragma once

class QWidget;

/// From now on the form is never larger than its screen when it is shown: where its layout needs more, all of
/// it scrolls, and what has the focus is brought into view. A form that places itself is moved into the
/// screen. Elsewhere nothing is changed. Call when the form has its layout; QMessageBox has one of its own.
void scrollWhereTooLarge(QWidget *form);
