#pragma once

namespace cinedisc {

/// What a viewer instance is for.
enum class ViewRole {
    Main,     ///< the large view: mouse tools, and words in its corners
    Preview,  ///< a small picture that is clicked
    Probe,    ///< never seen: opens files to ask them something
};

}  // namespace cinedisc
