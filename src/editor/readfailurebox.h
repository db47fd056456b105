#pragma once

#include "files/readfile.h"

class QWidget;

/// Tells the user, in a message box above `parent`, why a file was not read.
void tellReadFailure(QWidget *parent, ReadFailure failure);
