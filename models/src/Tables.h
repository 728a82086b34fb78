#pragma once

#include "Field.h"

#include "orivex/models/MessageBody.h"
#include "orivex/models/MessageCard.h"
#include "orivex/models/MessageModel.h"
#include "orivex/models/PageModels.h"
#include "orivex/models/ShortcutsModel.h"
#include "orivex/models/UploadModels.h"
#include "orivex/models/UserMappingModel.h"

// The JSON of every record, on one page. Decoding and encoding are both driven by these tables: a new field is one line
// here beside its member in the record. Members without a line are no part of the JSON.

namespace orivex {

template <>
inline constexpr auto fieldsOf<FailModel> = std::tuple{
    field("msg", &FailModel::msg),
};

template <>
inline constexpr auto fieldsOf<MessageCustomFields> = std::tuple{
    field("key", &MessageCustomFields::key),
    field("value", &MessageCustomFields::value),
};

template <>
inline constexpr auto fieldsOf<MessageCustomMenus> = std::tuple{
    field("type", &MessageCustomMenus::type),
    field("title", &MessageCustomMenus::title),
    field("command", &MessageCustomMenus::command),
    field("visible", &MessageCustomMenus::visible),
};

template <>
inline constexpr auto fieldsOf<MessageCustomItems> = std::tuple{
    field("customMenus", &MessageCustomItems::customMenus),
    field("customFields", &MessageCustomItems::customFields),
    field("customCardDesc", &MessageCustomItems::customCardDesc),
    field("customCardLink", &MessageCustomItems::customCardLink),
    field("customCardName", &MessageCustomItems::customCardName),
    field("customCardAmount", &MessageCustomItems::customCardAmount),
    field("customCardThumbnail", &MessageCustomItems::customCardThumbnail),
    field("customCardAmountSymbol", &MessageCustomItems::customCardAmountSymbol),
    field("customCardAmountName", &MessageCustomItems::customCardAmountName),
    field("customCardOriginalAmount", &MessageCustomItems::customCardOriginalAmount),
    field("cellHeight", &MessageCustomItems::cellHeight),
    field("isWrap", &MessageCustomItems::isWrap),
};

template <>
inline constexpr auto fieldsOf<incoming::MessageCustomItems> = std::tuple{
    field("customMenus", &incoming::MessageCustomItems::customMenus),
    field("customFields", &incoming::MessageCustomItems::customFields),
    field("customCardDesc", &incoming::MessageCustomItems::customCardDesc),
    field("customCardLink", &incoming::MessageCustomItems::customCardLink),
    field("customCardName", &incoming::MessageCustomItems::customCardName),
    field("customCardAmount", &incoming::MessageCustomItems::customCardAmount),
    field("customCardThumbnail", &incoming::MessageCustomItems::customCardThumbnail),
    field("customCardAmountSymbol", &incoming::MessageCustomItems::customCardAmountSymbol),
    field("customCardAmountName", &incoming::MessageCustomItems::customCardAmountName),
    field("customCardOriginalAmount", &incoming::MessageCustomItems::customCardOriginalAmount),
};

template <>
inline constexpr auto fieldsOf<MessageBody> = std::tuple{
    field("msgType", &MessageBody::msgType),
    field("mediaUrl", &MessageBody::mediaUrl),
    field("duration", &MessageBody::duration),
    field("width", &MessageBody::width),
    field("height", &MessageBody::height),
    field("content", &MessageBody::content),
    field("image", &MessageBody::image),
    field("name", &MessageBody::name),
    field("voiceLocalPath", &MessageBody::voiceLocalPath),
    field("annexLocalData", &MessageBody::annexLocalData),
    field("annexLocalPath", &MessageBody::annexLocalPath),
    field("contentType", &MessageBody::contentType),
    field("fileName", &MessageBody::fileName),
    field("fileSize", &MessageBody::fileSize),
    field("videoLocalPath", &MessageBody::videoLocalPath),
    field("videoCoverImage", &MessageBody::videoCoverImage),
    field("coverUrl", &MessageBody::coverUrl),
    field("videoName", &MessageBody::videoName),
    field("linkUrl", &MessageBody::linkUrl),
    field("title", &MessageBody::title),
    field("link_description", &MessageBody::link_description),
    field("openMethod", &MessageBody::openMethod),
    field("imageUrl", &MessageBody::imageUrl),
    field("url", &MessageBody::url),
    field("button", &MessageBody::button),
    field("cardType", &MessageBody::cardType),
    field("cardGuide", &MessageBody::cardGuide),
    field("cardDesc", &MessageBody::cardDesc),
    field("cardImg", &MessageBody::cardImg),
    field("cardLink", &MessageBody::cardLink),
    field("customFields", &MessageBody::customFields),
    field("customItems", &MessageBody::customItems),
    field("customMenus", &MessageBody::customMenus),
    field("businessProps", &MessageBody::businessProps),
};

template <>
inline constexpr auto fieldsOf<incoming::MessageBody> = std::tuple{
    field("msgType", &incoming::MessageBody::msgType),
    field("mediaUrl", &incoming::MessageBody::mediaUrl),
    field("duration", &incoming::MessageBody::duration),
    field("width", &incoming::MessageBody::width),
    field("height", &incoming::MessageBody::height),
    field("content", &incoming::MessageBody::content),
    field("image", &incoming::MessageBody::image),
    field("name", &incoming::MessageBody::name),
    field("contentType", &incoming::MessageBody::contentType),
    field("fileName", &incoming::MessageBody::fileName),
    field("fileSize", &incoming::MessageBody::fileSize),
    field("coverUrl", &incoming::MessageBody::coverUrl),
    field("videoName", &incoming::MessageBody::videoName),
    field("linkUrl", &incoming::MessageBody::linkUrl),
    field("title", &incoming::MessageBody::title),
    field("link_description", &incoming::MessageBody::link_description),
    field("openMethod", &incoming::MessageBody::openMethod),
    field("imageUrl", &incoming::MessageBody::imageUrl),
    field("url", &incoming::MessageBody::url),
    field("button", &incoming::MessageBody::button),
    field("cardImg", &incoming::MessageBody::cardImg),
    field("cardDesc", &incoming::MessageBody::cardDesc),
    field("cardLink", &incoming::MessageBody::cardLink),
    field("cardType", &incoming::MessageBody::cardType),
    field("cardGuide", &incoming::MessageBody::cardGuide),
    field("customItems", &incoming::MessageBody::customItems),
    field("customFields", &incoming::MessageBody::customFields),
    field("customMenus", &incoming::MessageBody::customMenus),
    field("titleWord", &incoming::MessageBody::titleWord),
    field("stfTemplateId", &incoming::MessageBody::stfTemplateId),
    field("pushType", &incoming::MessageBody::pushType),
    field("customPageUrl", &incoming::MessageBody::customPageUrl),
};

template <>
inline constexpr auto fieldsOf<MessageModel> = std::tuple{
    field("mId", &MessageModel::mId),
    field("createTime", &MessageModel::createTime),
    field("cMid", &MessageModel::cMid),
    field("mType", &MessageModel::mType),
    field("messageBody", &MessageModel::messageBody),
    field("optionSelected", &MessageModel::optionSelected),
    field("sUserId", &MessageModel::sUserId),
    field("sessionId", &MessageModel::sessionId),
    field("mStatus", &MessageModel::mStatus),
    field("memberType", &MessageModel::memberType),
    field("isSensitive", &MessageModel::isSensitive),
    field("sessionStartTime", &MessageModel::sessionStartTime),
    field("renderMemberType", &MessageModel::renderMemberType),
};

template <>
inline constexpr auto fieldsOf<incoming::MessageModel> = std::tuple{
    field("mId", &incoming::MessageModel::mId),
    field("createTime", &incoming::MessageModel::createTime),
    field("cMid", &incoming::MessageModel::cMid),
    field("mType", &incoming::MessageModel::mType),
    field("messageBody", &incoming::MessageModel::messageBody),
    field("optionSelected", &incoming::MessageModel::optionSelected),
    field("sUserId", &incoming::MessageModel::sUserId),
    field("sessionId", &incoming::MessageModel::sessionId),
    field("msgStatus", &incoming::MessageModel::msgStatus),
    field("memberType", &incoming::MessageModel::memberType),
    field("isSensitive", &incoming::MessageModel::isSensitive),
    field("sessionStartTime", &incoming::MessageModel::sessionStartTime),
    field("renderMemberType", &incoming::MessageModel::renderMemberType),
};

template <>
inline constexpr auto fieldsOf<PostMessageModel> = std::tuple{
    field("deviceId", &PostMessageModel::deviceId),
    field("fileSize", &PostMessageModel::fileSize),
    field("action", &PostMessageModel::action),
    field("mimeTypes", &PostMessageModel::mimeTypes),
};

template <>
inline constexpr auto fieldsOf<ShortcutsModel> = std::tuple{
    field("title", &ShortcutsModel::title),
    field("shortcutType", &ShortcutsModel::shortcutType),
    field("command", &ShortcutsModel::command),
};

template <>
inline constexpr auto fieldsOf<TrackModel> = std::tuple{
    field("name", &TrackModel::name),
    field("attributes", &TrackModel::attributes),
};

template <>
inline constexpr auto fieldsOf<UploadFileInfoModel> = std::tuple{
    field("name", &UploadFileInfoModel::name),         field("type", &UploadFileInfoModel::type),
    field("url", &UploadFileInfoModel::url),           field("base64Str", &UploadFileInfoModel::base64Str),
    field("height", &UploadFileInfoModel::height),     field("width", &UploadFileInfoModel::width),
    field("duration", &UploadFileInfoModel::duration), field("suffix", &UploadFileInfoModel::suffix),
    field("size", &UploadFileInfoModel::size),         field("mimeType", &UploadFileInfoModel::mimeType),
};

template <>
inline constexpr auto fieldsOf<UploadResposeModel> = std::tuple{
    field("url", &UploadResposeModel::url),
    field("inputContentType", &UploadResposeModel::inputContentType),
    field("actualContentType", &UploadResposeModel::actualContentType),
};

template <>
inline constexpr auto fieldsOf<UserMappingModel> = std::tuple{
    field("identity_id", &UserMappingModel::identity_id),
    field("visitor_name", &UserMappingModel::visitor_name),
    field("phone", &UserMappingModel::phone),
    field("email", &UserMappingModel::email),
    field("deviceId", &UserMappingModel::deviceId),
    field("app_id", &UserMappingModel::app_id),
    field("app_name", &UserMappingModel::app_name),
    field("env_name", &UserMappingModel::env_name),
};

template <>
inline constexpr auto fieldsOf<WebViewEnvModel> = std::tuple{
    field("app_name", &WebViewEnvModel::app_name),
    field("env_name", &WebViewEnvModel::env_name),
    field("hh", &WebViewEnvModel::hh),
    field("bh", &WebViewEnvModel::bh),
    field("os_name", &WebViewEnvModel::os_name),
};

}  // namespace orivex
