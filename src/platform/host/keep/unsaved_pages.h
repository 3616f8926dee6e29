#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/host/keep/held_picture.h"
#include "platform/host/keep/notices.h"

namespace host {

/// The pages that could not be saved, until they are.
class UnsavedPages {
public:
    explicit UnsavedPages(Notices& notices) : notices_(notices) {}

    /// Keeps the picture and its page, and tells why, with the offer to try again.
    void keep(std::unique_ptr<HeldPicture> held, const std::string& error);

    /// Saves them in their places; else in the user's folder for state, or his home; else leaves them to the next
    /// start, where they are in a journal. What is none of these stays.
    void saveAgain();

    /// True when every page is where it belongs.
    [[nodiscard]] bool allInPlace() const { return !misplaced_ && waiting_.empty(); }

private:
    [[nodiscard]] bool saveElsewhere(const HeldPicture& held);

    Notices& notices_;
    std::vector<std::unique_ptr<HeldPicture>> waiting_;
    bool misplaced_ = false;
};

}  // namespace host
