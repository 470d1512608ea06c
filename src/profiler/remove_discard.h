// The rewrite of fragment shaders for draws without discard.
#pragma once

class CNEBTString;

// Rewrites a fragment shader so that a fragment that would have been discarded comes out magenta. False when
// there is nothing to rewrite; the text may be changed all the same, and is of no use then.
//
// This is text work without any parsing: it knows neither tokens nor the preprocessor, and what it makes of a
// shader need not compile. It does not return for a text with an unterminated block comment, nor for one
// whose "discard" stands next to anything but white space, ";" or "/", or at the very end.
bool RemoveDiscard(CNEBTString& source);
