// A driver as bad as those of the system: it forgets memory that it has asked for.
extern "C" void Draw() {
    static char* volatile picture;
    picture = new char[128];
    picture = nullptr;
}
