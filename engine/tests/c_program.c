/* A plain C program using the engine: start, create, name, read back, destroy. */
#include <stdio.h>
#include <string.h>

#include "zorvan/zrvs.h"
#include "zorvan/zslp.h"

#define CHECK(call)                                                  \
  do {                                                               \
    if ((call) != 0) {                                               \
      char text[ZRVS_MAXMESSAGELENGTH];                              \
      ZRVS_ge_getlasterror(NULL, text, sizeof text, NULL);           \
      fprintf(stderr, "%s failed: %s\n", #call, text);               \
      return 1;                                                      \
    }                                                                \
  } while (0)

int main(void) {
  ZRVSprob prob = NULL;
  ZSLPprob slp = NULL;
  char name[64];
  int length = 0, cols = -1;

  CHECK(ZRVSinit(NULL));
  CHECK(ZSLPinit());
  CHECK(ZRVScreateprob(&prob));
  CHECK(ZSLPcreateprob(&slp, &prob));
  CHECK(ZRVSloadlp(prob, "empty", 0, 0, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL,
                   NULL));
  CHECK(ZRVSsetprobname(prob, "from_c"));
  CHECK(ZRVSgetintattrib(prob, ZRVS_PROBNAMELENGTH, &length));
  CHECK(ZRVSgetprobname(prob, name));
  CHECK(ZRVSgetintattrib(prob, ZRVS_COLS, &cols));
  if (length != 6 || strcmp(name, "from_c") != 0 || cols != 0) {
    fprintf(stderr, "unexpected problem state: name '%s' (%d), %d columns\n", name, length, cols);
    return 1;
  }
  /* Destroying the main problem destroys the nonlinear one attached to it. */
  CHECK(ZRVSdestroyprob(prob));
  CHECK(ZSLPfree());
  CHECK(ZRVSfree());
  printf("c_program: created, named '%s' and destroyed a problem\n", name);
  return 0;
}
