#pragma once

/// The filter from its arguments to its exit status: reads standard input when no file is named,
/// writes the printer's job to standard output and messages to standard error.
///
/// The queue's PPD is the one that the environment names (KLPrintOptions). What the process itself
/// needs once (signals, standard descriptors) is main()'s part. Once in a process, one thread.
/// @param argc  number of arguments, the program's name included
/// @param argv  as filter(7) has them
/// @return 0 when the whole job was written; else 1, and a line on standard error says why
int runFilter(int argc, char *argv[]);
