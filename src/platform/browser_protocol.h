#pragma once

#include <cstddef>

namespace Corvetape::BrowserProtocol {

// What the recorder and its browser say to each other: one JSON object a line over a private pair of sockets,
// which the browser is started with. The browser ends when the recorder's end of it is closed.

/// The longest line that is read. Whoever sends a longer one is not listened to any more.
inline constexpr size_t LongestLine = 4UL * 1024 * 1024;

/// Longest title, address or status text that the browser passes on, in characters.
inline constexpr int LongestText = 4096;

// Arguments of the browser.
inline constexpr const char* SocketArgument = "--socket";  ///< with the number of the open socket
inline constexpr const char* WithoutSandboxArgument = "--without-sandbox";

/// The member that says what a line is about.
inline constexpr const char* Kind = "kind";

// From the recorder.
inline constexpr const char* Navigate = "navigate";  ///< url
inline constexpr const char* Evaluate = "evaluate";  ///< id, script
inline constexpr const char* Captions = "captions";  ///< back, forward, reload, stop, crashed

// From the browser.
inline constexpr const char* Status = "status";      ///< text
inline constexpr const char* Progress = "progress";  ///< value, which is -1 at the end, and maximum
inline constexpr const char* Loaded = "loaded";      ///< the page has come, or will not
inline constexpr const char* Page = "page";          ///< url and title as they are now
inline constexpr const char* Answer = "answer";      ///< id, and value if the script has one
inline constexpr const char* Crashed = "crashed";    ///< the page has gone, the browser is still there
inline constexpr const char* Refused = "refused";    ///< there is no sandbox; the browser ends
inline constexpr const char* Closed = "closed";      ///< the user has closed the window; the browser ends

// Members of the lines.
inline constexpr const char* Url = "url";
inline constexpr const char* Title = "title";
inline constexpr const char* Text = "text";
inline constexpr const char* Id = "id";
inline constexpr const char* Script = "script";
inline constexpr const char* Value = "value";
inline constexpr const char* Maximum = "maximum";
inline constexpr const char* Back = "back";
inline constexpr const char* Forward = "forward";
inline constexpr const char* Reload = "reload";
inline constexpr const char* Stop = "stop";
inline constexpr const char* CrashedCaption = "crashedcaption";

}  // namespace Corvetape::BrowserProtocol
