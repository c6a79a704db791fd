#pragma once

class QKeyEvent;

/** Whether the key is Return or Enter, which run a search or a submission. */
bool is_return_key(const QKeyEvent* event);
