// Help texts: every type and method documents itself in the same six sections.
#pragma once

#define ZRV_HELP(purpose, synopsis, arguments, example, further, related) \
  "Purpose:\n    " purpose "\n\n"                                        \
  "Synopsis:\n    " synopsis "\n\n"                                      \
  "Arguments:\n    " arguments "\n\n"                                    \
  "Example:\n    " example "\n\n"                                        \
  "Further information:\n    " further "\n\n"                            \
  "Related topics:\n    " related "\n"
