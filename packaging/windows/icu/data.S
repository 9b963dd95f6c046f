// The data file as ICU looks for it in a program: under the name of its version, in memory that is only read.
#define JOINED(left, right) left##right
#define NAMED(prefix, name) JOINED(prefix, name)
#define SYMBOL NAMED(__USER_LABEL_PREFIX__, ICU_DATA_NAME)
  .section .rdata, "dr"
  .balign 16
  .globl SYMBOL
SYMBOL:
  .incbin ICU_DATA_FILE
