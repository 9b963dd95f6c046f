// A library without the function that the program asks for.
extern "C" short SomethingElse() {
  return 0;
}
