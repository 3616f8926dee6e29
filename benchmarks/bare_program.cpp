// Links all the libraries of the program and returns at once.
int main() { return 0; }
