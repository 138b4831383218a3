#pragma once

// Gives back the pages of the calling thread's stack that lie well below its current frame.
//
// Wine writes about a megabyte of every new thread's stack before the thread's own code runs, and those
// pages stay resident for the thread's life. The tray's session-long threads run shallow, so each calls
// this once its start-up is done: the pages below hold nothing live, and fault back in, zeroed, should
// the thread ever reach that deep again. Wine also keeps the stack of the thread that ended last until
// another ends, so short-lived threads call this as they end. On Windows the range is the little the
// thread has committed below its frame, if any.
void release_unused_stack_pages() noexcept;
