// Placeholder until the first source arrives.
int main() { return 0; }
