#pragma once

#include "platform/filerequest.h"

class CommandLine;

/// Writes what a command line asks to be told, or what is wrong with it, to the terminal that it was typed
/// on, in that one's language, and gives the status to exit with. Needs no display.
int answerOnTerminal(const CommandLine &line, int argc, char **argv);

/// Where there is no display: hands the files over to the instance that has a window elsewhere, or says on
/// standard error why no window shows them. Gives the status to exit with.
int openWithoutDisplay(int argc, char **argv, const FileRequests &requests);
