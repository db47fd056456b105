#pragma once

class CommandLine;

/// Writes what a command line asks to be told, or what is wrong with it, to the terminal that it was typed
/// on, in that one's language, and gives the status to exit with. Needs no display.
int answerOnTerminal(const CommandLine &line, int argc, char **argv);
