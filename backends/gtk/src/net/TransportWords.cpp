#include "TransportWords.h"

#include "orivex/platform/base/Translation.h"

namespace orivex::gtk {

std::string transportWords(CURLcode code) {
  switch (code) {
    case CURLE_OPERATION_TIMEDOUT:
      return trLater("请求超时");
    case CURLE_COULDNT_RESOLVE_HOST:
      return trLater("找不到服务器");
    case CURLE_COULDNT_RESOLVE_PROXY:
      return trLater("找不到代理服务器");
    case CURLE_COULDNT_CONNECT:
      return trLater("无法连接到服务器");
    case CURLE_PROXY:
      return trLater("代理服务器拒绝了请求");
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_CIPHER:
    case CURLE_SSL_INVALIDCERTSTATUS:
    case CURLE_PEER_FAILED_VERIFICATION:
      return trLater("无法建立安全连接");
    case CURLE_URL_MALFORMAT:
    case CURLE_UNSUPPORTED_PROTOCOL:
      return trLater("不支持的地址");
    case CURLE_TOO_MANY_REDIRECTS:
      return trLater("重定向次数过多");
    case CURLE_READ_ERROR:
      return trLater("文件无法读取");
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
    case CURLE_GOT_NOTHING:
    case CURLE_PARTIAL_FILE:
      return trLater("连接已断开");
    case CURLE_ABORTED_BY_CALLBACK:
      return trLater("已取消");
    case CURLE_BAD_CONTENT_ENCODING:
    case CURLE_FILESIZE_EXCEEDED:
    case CURLE_WEIRD_SERVER_REPLY:
      return trLater("服务器的回复无法读取");
    default:
      return trLater("请求失败");
  }
}

}  // namespace orivex::gtk
