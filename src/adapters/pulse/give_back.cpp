#include "adapters/pulse/give_back.h"

namespace velt {

void GiveBack(pa_stream& stream) {
  // What the server is still making can only be given back once it is there; until then the
  // context keeps it.
  const auto onceItIsThere = [](pa_stream* made, void*) {
    if (pa_stream_get_state(made) == PA_STREAM_READY) pa_stream_disconnect(made);
  };
  const bool unfinished = pa_stream_get_state(&stream) == PA_STREAM_CREATING;
  pa_stream_set_state_callback(&stream, unfinished ? +onceItIsThere : nullptr, nullptr);
  if (!unfinished) pa_stream_disconnect(&stream);
  pa_stream_unref(&stream);
}

}  // namespace velt
