#include "MPPCommon/storage/SSLTypes.h"

const char* sslResultName(int32_t code) {
    switch (code) {
    case SSL_OK:
        return "SSL_OK";
    case SSL_ERROR_FILE_NOT_FOUND:
        return "SSL_ERROR_FILE_NOT_FOUND";
    case SSL_ERROR_NAME_EXISTS:
        return "SSL_ERROR_NAME_EXISTS";
    case SSL_ERROR_NOT_COMPOUND_FILE:
        return "SSL_ERROR_NOT_COMPOUND_FILE";
    case SSL_ERROR_IO:
        return "SSL_ERROR_IO";
    case SSL_ERROR_NO_MEMORY:
        return "SSL_ERROR_NO_MEMORY";
    case SSL_ERROR_BAD_ARGUMENT:
        return "SSL_ERROR_BAD_ARGUMENT";
    case SSL_ERROR_BAD_CHAIN:
        return "SSL_ERROR_BAD_CHAIN";
    case SSL_ERROR_NOT_STORAGE:
        return "SSL_ERROR_NOT_STORAGE";
    case SSL_ERROR_NOT_STREAM:
        return "SSL_ERROR_NOT_STREAM";
    case SSL_ERROR_NOT_FOUND:
        return "SSL_ERROR_NOT_FOUND";
    case SSL_ERROR_END_OF_STREAM:
        return "SSL_ERROR_END_OF_STREAM";
    case SSL_ERROR_BAD_DIRECTORY:
        return "SSL_ERROR_BAD_DIRECTORY";
    case SSL_ERROR_EMPTY_FILE:
        return "SSL_ERROR_EMPTY_FILE";
    default:
        return "SSL_ERROR_UNKNOWN";
    }
}
