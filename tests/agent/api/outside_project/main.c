/* An application that knows the C API alone: opens, escapes, closes. */
#include <slp.h>
#include <stdio.h>
#include <string.h>

int main(void) {
  SLPHandle handle = NULL;
  char* escaped = NULL;
  int matches;

  if (SLPOpen("en", SLP_FALSE, &handle) != SLP_OK) {
    fputs("SLPOpen failed\n", stderr);
    return 1;
  }
  if (SLPEscape("a,b", &escaped, SLP_FALSE) != SLP_OK) {
    fputs("SLPEscape failed\n", stderr);
    return 1;
  }
  matches = strcmp(escaped, "a\\2Cb") == 0;
  SLPFree(escaped);
  SLPClose(handle);
  return matches ? 0 : 1;
}
