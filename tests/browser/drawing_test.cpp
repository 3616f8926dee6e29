#include "platform/host/browser/drawing.h"

#include <gmock/gmock.h>

#include "support/input_words.h"

using namespace host;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Action = PointerMessage::Action;
using Kind = PointerMessage::Kind;

class BrowserDrawing : public testing::Test {
protected:
    bool does(int client, Action action, Kind kind, std::uint32_t id, Point at) {
        return drawing_.pointer(client, {action, kind, id, {at}}, now_);
    }

    /// What has come since the last time.
    std::vector<std::string> inputs() {
        std::vector<std::string> words;
        for (const Input& input : inputs_) words.push_back(inWords(input));
        inputs_.clear();
        return words;
    }

    SteadyTime now_{1h};
    std::deque<Input> inputs_;
    Drawing drawing_{inputs_};
};

TEST_F(BrowserDrawing, BelongsToWhoeverCameFirst) {
    EXPECT_TRUE(does(1, Action::Down, Kind::Finger, 5, {1, 1}));
    EXPECT_TRUE(does(1, Action::Down, Kind::Finger, 6, {2, 2})) << "a second finger of the same hand";
    EXPECT_FALSE(does(2, Action::Down, Kind::Pen, 5, {3, 3}));
    EXPECT_TRUE(drawing_.drawnByAnother(2));
    does(2, Action::Move, Kind::Pen, 5, {4, 4});
    does(1, Action::Up, Kind::Finger, 6, {5, 5});
    drawing_.leave(2);
    EXPECT_THAT(inputs(), ElementsAre("down 1,1"));
    drawing_.pointer(1, {Action::Move, Kind::Finger, 5, {{6, 6}, {7, 7}}}, now_);
    drawing_.leave(1);
    EXPECT_THAT(inputs(), ElementsAre("move 6,6", "move 7,7", "up 7,7"));
    does(2, Action::Move, Kind::Pen, 5, {8, 8});
    EXPECT_THAT(inputs(), IsEmpty()) << "a press that was ignored stays so";
    EXPECT_TRUE(does(2, Action::Down, Kind::Pen, 5, {9, 9}));
    EXPECT_THAT(inputs(), ElementsAre("down 9,9"));
}

TEST_F(BrowserDrawing, ThePenTakesOverFromThePalm) {
    does(1, Action::Down, Kind::Finger, 5, {1, 1});
    does(1, Action::Move, Kind::Finger, 5, {2, 2});
    does(1, Action::Down, Kind::Pen, 9, {3, 3});
    does(1, Action::Move, Kind::Finger, 5, {4, 4});
    does(1, Action::Down, Kind::Finger, 6, {5, 5});
    does(1, Action::Up, Kind::Pen, 9, {6, 6});
    EXPECT_THAT(inputs(), ElementsAre("down 1,1", "move 2,2", "up 2,2", "down 3,3", "up 6,6"));
    now_ += 499ms;
    EXPECT_TRUE(does(1, Action::Down, Kind::Finger, 7, {7, 7}));
    EXPECT_THAT(inputs(), IsEmpty());
    does(2, Action::Down, Kind::Finger, 7, {8, 8});
    does(2, Action::Up, Kind::Finger, 7, {8, 8});
    EXPECT_THAT(inputs(), ElementsAre("down 8,8", "up 8,8")) << "another hand";
    now_ += 1ms;
    does(1, Action::Down, Kind::Finger, 7, {9, 9});
    EXPECT_THAT(inputs(), ElementsAre("down 9,9"));
    does(1, Action::Down, Kind::Mouse, 8, {1, 1});
    EXPECT_THAT(inputs(), IsEmpty());
}

}  // namespace
