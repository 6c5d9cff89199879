// Texts and paths by characters. Texts are in the ANSI code page of the system, in which a
// character can have two bytes; the second can look like a backslash, a wildcard or a capital.
#ifndef SHARED_TEXT_H
#define SHARED_TEXT_H

#include <stddef.h>

namespace shared {

// Returns the character that follows the one at pszText, or pszText itself at the end of the text.
const char* nextChar(const char* pszText);

// Returns the first or the last character of a text that is one of those in pszSet, which have one
// byte each, or null if there is none.
const char* findFirstOf(const char* pszText, const char* pszSet);
const char* findLastOf(const char* pszText, const char* pszSet);

// Returns what follows the last backslash of a path: the whole text if it has none, null for null.
const char* behindLastBackslash(const char* pszPath);

bool endsInBackslash(const char* pszPath);

// Returns the length in bytes of the directory part of a typed name, with the backslash, slash or
// colon at its end. 0 if the name has no directory part.
size_t dirLength(const char* pszName);

// Copies a text to a buffer of cbBuffer bytes. A text that is too long is cut between two
// characters; null counts as an empty text.
void copyText(char* pszBuffer, const char* pszText, size_t cbBuffer);

// Appends a name to the directory in a buffer of cbBuffer bytes, with a backslash between them
// unless the directory is empty or ends in one. Returns false, with the buffer unchanged, if it is
// too small.
bool appendName(char* pszDir, const char* pszName, size_t cbBuffer);

// Converts the single-byte letters of a text to lower case, in place. Unlike _strlwr, it leaves the
// second bytes of characters alone.
void toLowerCase(char* pszText);

// Whether two full paths spell the same directory. The case of the letters and a backslash at the
// end don't count. Both are at most 259 characters.
bool isSameDir(const char* pszDir, const char* pszOther);

} // namespace shared

#endif
