// Built by its test only, which passes when the compiler refuses the shadowed name.

int main(int argc, char *[])
{
    if (argc > 1) {
        const int argc = 0;
        return argc;
    }
    return 0;
}
