// A monitor that sleeps while the file named by STANDIN_ASLEEP exists: virtual X servers have none
// that could. Linked with --wrap; without the variable the server is asked as ever.
#include <unistd.h>
#include <xcb/dpms.h>
#include <xcb/xcb.h>

#include <cstdlib>

extern "C" {

const xcb_query_extension_reply_t* __real_xcb_get_extension_data(xcb_connection_t*,
                                                                 xcb_extension_t*);
xcb_dpms_info_cookie_t __real_xcb_dpms_info(xcb_connection_t*);
xcb_dpms_info_reply_t* __real_xcb_dpms_info_reply(xcb_connection_t*, xcb_dpms_info_cookie_t,
                                                  xcb_generic_error_t**);

const xcb_query_extension_reply_t* __wrap_xcb_get_extension_data(xcb_connection_t* connection,
                                                                 xcb_extension_t* extension) {
    static xcb_query_extension_reply_t present;
    if (extension != &xcb_dpms_id || !std::getenv("STANDIN_ASLEEP"))
        return __real_xcb_get_extension_data(connection, extension);
    present.present = 1;
    return &present;
}

xcb_dpms_info_cookie_t __wrap_xcb_dpms_info(xcb_connection_t* connection) {
    return std::getenv("STANDIN_ASLEEP") ? xcb_dpms_info_cookie_t{}
                                         : __real_xcb_dpms_info(connection);
}

xcb_dpms_info_reply_t* __wrap_xcb_dpms_info_reply(xcb_connection_t* connection,
                                                  xcb_dpms_info_cookie_t cookie,
                                                  xcb_generic_error_t** error) {
    const char* file = std::getenv("STANDIN_ASLEEP");
    if (!file)
        return __real_xcb_dpms_info_reply(connection, cookie, error);
    auto* reply =
        static_cast<xcb_dpms_info_reply_t*>(std::calloc(1, sizeof(xcb_dpms_info_reply_t)));
    reply->state = 1;
    reply->power_level =
        access(file, F_OK) == 0 ? XCB_DPMS_DPMS_MODE_STANDBY : XCB_DPMS_DPMS_MODE_ON;
    return reply;
}
}
