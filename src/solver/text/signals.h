// Requests to end the process, while files are half written.
#pragma once

namespace frameslv {

// From here on a request to end (SIGTERM, SIGINT, SIGHUP) first removes these files of the working
// directory. The names, of which a null pointer is the last, must stay.
void remove_when_ended(const char* const* names);

// While one lives such requests wait.
class EndsWait {
  public:
    EndsWait();
    ~EndsWait();
    EndsWait(const EndsWait&) = delete;
    EndsWait& operator=(const EndsWait&) = delete;
};

} // namespace frameslv
