// SPDX-License-Identifier: LGPL-2.1-or-later
//
// A small film player that shows the subtitles beside a film.
//
//     player FILM
//
// Keys in its window: t takes the next subtitles, and none behind the last; + and - make them
// larger and smaller; the space bar pauses, the arrows jump by five seconds, q ends.
//
// playbin does the film. Its "video-filter" is a bin of our own, in which textoverlay draws on each
// frame what subtitlesrc reads from a file:
//
//     film -----------> textoverlay -> video sink
//     subtitlesrc ----> (text_sink)

#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include <gst/gst.h>
#include <gst/video/navigation.h>
#include <subtitles/subtitles.h>

namespace {

/// What belongs to the film: subtitle files whose names begin like its own.
std::vector<subtitles::SubtitleReference> findSubtitles(const std::filesystem::path& film) {
    std::vector<subtitles::SubtitleReference> tracks;
    try {
        subtitles::SubtitleFinder::instance()->processFolder(
            fn::Path::parsePath(film.parent_path().string()), film.stem().string(),
            film.extension().string(), tracks);
    } catch (const fn::Exception& exception) {
        std::cerr << "player: " << exception.what() << '\n';
    }
    return tracks;
}

constexpr auto seekFlags = static_cast<GstSeekFlags>(static_cast<int>(GST_SEEK_FLAG_FLUSH) |
                                                     static_cast<int>(GST_SEEK_FLAG_ACCURATE));

class Player {
public:
    explicit Player(const std::filesystem::path& film);
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;
    ~Player();

    /// Plays until the film or the viewer ends it. The exit status.
    int run();

private:
    static gboolean onMessage(GstBus* bus, GstMessage* message, gpointer self);
    static GstPadProbeReturn onSeek(GstPad* pad, GstPadProbeInfo* info, gpointer self);

    GstElement* makeFilter();
    void onError(GstMessage* message);
    void onNavigation(GstMessage* message);
    void onKey(const std::string& key);

    void showTrack(std::size_t index);
    void startSource(const subtitles::SubtitleReference& track);
    void setFrameRate();
    void setSize(int points);
    void togglePause();
    void seekTo(gint64 time);
    gint64 position() const;

    std::vector<subtitles::SubtitleReference> tracks;
    std::size_t current = 0;  ///< The track that is shown; behind the last, none is.
    int size = 20;            ///< Of the letters, in points.
    bool isStarted = false;
    bool isPaused = false;
    int status = 0;

    GMainLoop* loop = g_main_loop_new(nullptr, FALSE);
    GstElement* playbin = gst_element_factory_make("playbin", nullptr);
    // These two belong to the filter, and that to playbin.
    GstElement* source = gst_element_factory_make("subtitlesrc", nullptr);
    GstElement* overlay = gst_element_factory_make("textoverlay", nullptr);
    GstPad* textSink = nullptr;
};

Player::Player(const std::filesystem::path& film) : tracks(findSubtitles(film)) {
    gchar* const uri = gst_filename_to_uri(film.c_str(), nullptr);
    g_object_set(playbin, "uri", uri, "video-filter", makeFilter(), nullptr);
    g_free(uri);
    setSize(size);
    GstBus* const bus = gst_element_get_bus(playbin);
    gst_bus_add_watch(bus, onMessage, this);
    gst_object_unref(bus);
}

Player::~Player() {
    gst_element_set_state(playbin, GST_STATE_NULL);
    GstBus* const bus = gst_element_get_bus(playbin);
    gst_bus_remove_watch(bus);
    gst_object_unref(bus);
    gst_object_unref(textSink);
    gst_object_unref(playbin);
    g_main_loop_unref(loop);
}

GstElement* Player::makeFilter() {
    GstElement* const filter = gst_bin_new("subtitles");
    GstElement* const convert = gst_element_factory_make("videoconvert", nullptr);
    gst_bin_add_many(GST_BIN(filter), convert, overlay, source, nullptr);
    gst_element_link_pads(convert, "src", overlay, "video_sink");
    GstPad* const in = gst_element_get_static_pad(convert, "sink");
    gst_element_add_pad(filter, gst_ghost_pad_new("sink", in));
    gst_object_unref(in);
    GstPad* const out = gst_element_get_static_pad(overlay, "src");
    gst_element_add_pad(filter, gst_ghost_pad_new("src", out));
    gst_pad_add_probe(out, GST_PAD_PROBE_TYPE_EVENT_UPSTREAM, onSeek, this, nullptr);
    gst_object_unref(out);
    textSink = gst_element_get_static_pad(overlay, "text_sink");
    // It starts with the first track, when the film's frame rate is known.
    gst_element_set_locked_state(source, TRUE);
    return filter;
}

int Player::run() {
    gst_element_set_state(playbin, GST_STATE_PLAYING);
    g_main_loop_run(loop);
    return status;
}

gboolean Player::onMessage(GstBus*, GstMessage* message, gpointer self) {
    auto& player = *static_cast<Player*>(self);
    switch (GST_MESSAGE_TYPE(message)) {
        case GST_MESSAGE_ASYNC_DONE:
            if (!player.isStarted) {
                player.isStarted = true;
                player.showTrack(0);
            }
            break;
        case GST_MESSAGE_ELEMENT: player.onNavigation(message); break;
        case GST_MESSAGE_ERROR: player.onError(message); break;
        case GST_MESSAGE_EOS: g_main_loop_quit(player.loop); break;
        default: break;
    }
    return G_SOURCE_CONTINUE;
}

void Player::onError(GstMessage* message) {
    GError* error = nullptr;
    gst_message_parse_error(message, &error, nullptr);
    std::cerr << "player: " << error->message << '\n';
    g_error_free(error);
    // Subtitles that cannot be read end the text; the film goes on.
    if (GST_MESSAGE_SRC(message) != GST_OBJECT(source)) {
        status = 1;
        g_main_loop_quit(loop);
    }
}

/// What the viewer does in the window comes as messages.
void Player::onNavigation(GstMessage* message) {
    GstEvent* event = nullptr;
    if (gst_navigation_message_get_type(message) != GST_NAVIGATION_MESSAGE_EVENT ||
        !gst_navigation_message_parse_event(message, &event)) {
        return;
    }
    const char* key = nullptr;
    if (gst_navigation_event_get_type(event) == GST_NAVIGATION_EVENT_KEY_PRESS &&
        gst_navigation_event_parse_key_event(event, &key)) {
        onKey(key);
    }
    gst_event_unref(event);
}

void Player::onKey(const std::string& key) {
    constexpr gint64 jump = 5 * GST_SECOND;
    if (key == "t") {
        showTrack(current < tracks.size() ? current + 1 : 0);
    } else if (key == "plus" || key == "equal" || key == "KP_Add") {
        setSize(size + 2);
    } else if (key == "minus" || key == "KP_Subtract") {
        setSize(size - 2);
    } else if (key == "space") {
        togglePause();
    } else if (key == "Left") {
        seekTo(position() - jump);
    } else if (key == "Right") {
        seekTo(position() + jump);
    } else if (key == "q" || key == "Escape") {
        g_main_loop_quit(loop);
    }
}

void Player::showTrack(std::size_t index) {
    current = index;
    const bool isShown = index < tracks.size();
    if (isShown) {
        startSource(tracks[index]);
    }
    g_object_set(overlay, "silent", isShown ? FALSE : TRUE, nullptr);
    std::cout << "Subtitles: " << (isShown ? tracks[index].languageName() : "none") << std::endl;
}

void Player::startSource(const subtitles::SubtitleReference& track) {
    // The old text may wait for its frame in the overlay, and its thread with it: a flush frees it.
    gst_pad_send_event(textSink, gst_event_new_flush_start());
    gst_element_set_state(source, GST_STATE_READY);
    gst_pad_send_event(textSink, gst_event_new_flush_stop(TRUE));
    setFrameRate();
    g_object_set(source, "reference", track.serialize().c_str(), nullptr);
    if (!gst_pad_is_linked(textSink)) {
        gst_element_link_pads(source, "src", overlay, "text_sink");
    }
    // Film and text begin anew together, here; and the film goes first, as it is flushed by that.
    const gint64 time = position();
    seekTo(time);
    gst_element_send_event(
        source, gst_event_new_seek(1, GST_FORMAT_TIME, seekFlags, GST_SEEK_TYPE_SET, time,
                                   GST_SEEK_TYPE_NONE, 0));
    gst_element_set_locked_state(source, FALSE);
    gst_element_sync_state_with_parent(source);
}

/// Some files count frames, and it is the film that knows how long those are.
void Player::setFrameRate() {
    GstPad* const pad = gst_element_get_static_pad(overlay, "video_sink");
    GstCaps* caps = gst_pad_get_current_caps(pad);
    gst_object_unref(pad);
    int numerator = 0;
    int denominator = 1;
    if (caps != nullptr &&
        gst_structure_get_fraction(gst_caps_get_structure(caps, 0), "framerate", &numerator,
                                   &denominator) &&
        numerator > 0) {
        g_object_set(source, "video-fps", numerator, denominator, nullptr);
    }
    gst_clear_caps(&caps);
}

void Player::setSize(int points) {
    size = CLAMP(points, 8, 60);
    const std::string font = "Sans " + std::to_string(size);
    g_object_set(overlay, "font-desc", font.c_str(), nullptr);
}

void Player::togglePause() {
    isPaused = !isPaused;
    gst_element_set_state(playbin, isPaused ? GST_STATE_PAUSED : GST_STATE_PLAYING);
}

gint64 Player::position() const {
    gint64 time = 0;
    gst_element_query_position(playbin, GST_FORMAT_TIME, &time);
    return time;
}

void Player::seekTo(gint64 time) {
    gst_element_seek_simple(playbin, GST_FORMAT_TIME, seekFlags, MAX(time, 0));
}

/// The overlay sends a seek to the film first, and would draw the old text on the new frame.
/// Without a text it waits for one.
GstPadProbeReturn Player::onSeek(GstPad*, GstPadProbeInfo* info, gpointer self) {
    GstPad* const textSink = static_cast<Player*>(self)->textSink;
    if (GST_EVENT_TYPE(GST_PAD_PROBE_INFO_EVENT(info)) == GST_EVENT_SEEK) {
        gst_pad_send_event(textSink, gst_event_new_flush_start());
        gst_pad_send_event(textSink, gst_event_new_flush_stop(TRUE));
    }
    return GST_PAD_PROBE_OK;
}

/// The first element that no installed plug-in has; null where all are there.
const char* missingElement() {
    for (const char* const name : {"playbin", "textoverlay", "videoconvert", "subtitlesrc"}) {
        GstElementFactory* const factory = gst_element_factory_find(name);
        if (factory == nullptr) {
            return name;
        }
        gst_object_unref(factory);
    }
    return nullptr;
}

}  // namespace

int main(int argc, char** argv) {
    gst_init(&argc, &argv);
    if (argc != 2) {
        std::cerr << "usage: player FILM\n";
        return 64;
    }
    if (const char* const name = missingElement()) {
        std::cerr << "player: GStreamer finds no element " << name << '\n';
        return 2;
    }
    return Player(std::filesystem::absolute(argv[1])).run();
}
