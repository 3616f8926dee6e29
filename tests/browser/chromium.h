#pragma once

#include <map>
#include <memory>
#include <string>

#include "platform/host/geometry.h"

struct SDL_Surface;

/// Debian's chromium without a screen, driven over the DevTools protocol on a pair of pipes.
class Chromium {
public:
    static bool installed();

    Chromium();
    Chromium(const Chromium&) = delete;
    Chromium& operator=(const Chromium&) = delete;
    ~Chromium();

    /// Opens a page in a window of that size.
    void open(const std::string& address, host::Size window);
    /// The value of a JavaScript expression that gives a string.
    std::string evaluate(const std::string& expression);
    /// True once the expression gives "true"; waits ten seconds for it.
    bool becomesTrue(const std::string& expression);
    /// `type` is mousePressed, mouseMoved or mouseReleased.
    void mouse(const std::string& type, host::Point at);
    /// Presses a key whose name is `key`, as the browser names it.
    void strike(const std::string& key);

    using Picture = std::unique_ptr<SDL_Surface, void (*)(SDL_Surface*)>;
    /// What the window shows, 24 bits R, G, B.
    Picture screenshot();

private:
    /// Sends a command with parameters in JSON; its answer.
    std::string command(const std::string& method, const std::string& parameters);
    std::string receive();

    std::string profile_;
    int to_ = -1;
    int from_ = -1;
    int pid_ = -1;
    int commands_ = 0;
    std::string session_;
    std::string received_;
};

/// The string value of a field in JSON; empty when there is none. Escapes are left as they are.
std::string jsonField(const std::string& json, const std::string& name);
