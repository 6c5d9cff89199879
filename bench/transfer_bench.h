// The benchmark of the transfer window: its frame, and its panes on large directories.
#ifndef BENCH_TRANSFER_BENCH_H
#define BENCH_TRANSFER_BENCH_H

void benchFrame(const char*);

// pszFolder holds folders named 1000, 10000 and 100000, each with so many files; null leaves
// the local side out.
void benchPanes(const char* pszFolder);
// The same for what a user waits for.
void benchWaits(const char* pszFolder);

#endif
