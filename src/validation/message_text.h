// How a rejection gets its text: from the client's message object, else a catalogue key.

#pragma once

#include <string>

#include "messages/msg_container.h"
#include "quiver/object.h"

namespace QV_2_9::internal {

/// Lets `fill` ask `message` for a text, which may be null. Returns `key` when there is nothing to
/// ask, or the text stays empty.
template <class Message, class Fill>
std::wstring messageText(const ObjectPtr<Message>& message, const wchar_t* key, Fill fill) {
  MsgContainer container;
  if (message)
    fill(*message, container);
  const wchar_t* text = container.getMessage();
  return text ? text : key;
}

}  // namespace QV_2_9::internal
