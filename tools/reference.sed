# For the reference: the comment at the head of a header is that file's description.
1,/^#pragma once/s#^//\( \|$\)#///\1#
1s#^#/// @file\n#
