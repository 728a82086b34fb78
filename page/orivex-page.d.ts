// Types of what a chat page and the component exchange; docs/page.md says what each of it does.
//
//   /// <reference path="orivex-page.d.ts" />

declare namespace Orivex {
  /** What `postMessage` of each handler takes. A body of another shape is dropped, and the page is not told. */
  interface Messages {
    /** An event for the host's statistics. */
    trackEvent: TrackEvent;
    /** An address to open outside the page. */
    openUrl: string;
    /** A web address whose file another application shall open. */
    openFile: string;
    /** Answered by `handleSelectedFiles`. */
    openCamera: Request;
    /** Answered by `handleSelectedFiles`. */
    openPhotoLibraryPicker: Request;
    /** Answered by `handleSelectedFiles`. */
    openDocumentPicker: Request;
    /** The page may be shown. The body is ignored. */
    initLoaded: unknown;
    /** A step of press-to-talk. "end" is answered by `handleSelectedRecord`. */
    recording: Request & Required<Pick<Request, "action">>;
    /** The chat closes. The body is ignored. */
    goBack: unknown;
  }

  /** What further handlers take, where the application has them. */
  interface OptionalMessages {
    /** The visitor has chosen a shortcut. */
    shortCut: Shortcut;
    /** A message of the conversation, for the application. */
    message: Message;
    /** How many messages the visitor has not read. */
    unreadCount: number;
  }

  interface TrackEvent {
    name: string;
    attributes: Record<string, string>;
  }

  interface Shortcut {
    title?: string;
    shortcutType?: number;
    command?: string;
  }

  interface Request {
    /** Identifies the visitor; uploads carry it as `x-device-id`. */
    deviceId: string;
    /**
     * Bytes, a whole number: of the largest video for camera and photo library (52428800 when absent), of the largest
     * document for the document picker (31457280).
     */
    fileSize?: number | null;
    /** For `recording`, which does nothing without it. */
    action?: "start" | "hold" | "recover" | "end" | "cancel";
    /** What the document picker offers first, such as "application/pdf" or "image/*"; all files when absent or empty. */
    mimeTypes?: string[] | null;
  }

  /** A file that the visitor has given to the page. A key without a value is absent, never null. */
  interface SelectedFile {
    name?: string;
    type: "File" | "Image" | "Video" | "Record";
    /** Where the chat server keeps the file; absent for photos, which come as `base64Str` alone. */
    url?: string;
    /** A picture, or the first frame of a video, as a data address. */
    base64Str?: string;
    /** Pixels. */
    height?: number;
    /** Pixels. */
    width?: number;
    /** Seconds. */
    duration?: number;
    /** The extension of the file's name, without its dot; may be empty. */
    suffix: string;
    /** Bytes. */
    size?: number;
    mimeType?: string;
  }

  interface SelectedRecord extends SelectedFile {
    type: "Record";
    url: string;
    /** Whole seconds. */
    duration: number;
  }

  /** What surrounds the page. */
  interface Environment {
    app_name: string;
    env_name: string;
    /** Height of the status bar over the page's top, in CSS pixels, whole. */
    hh: number;
    /** Height of the zone at the page's bottom that belongs to the system, in CSS pixels, whole. */
    bh: number;
    os_name: "iOS";
  }

  /** One message of the conversation. Codes and times are the page's own. */
  interface Message {
    mId?: number;
    createTime?: number;
    cMid?: string;
    mType?: number;
    messageBody?: MessageBody;
    optionSelected?: string;
    sUserId?: string;
    sessionId?: string;
    mStatus?: number;
    memberType?: number;
    isSensitive?: boolean;
    sessionStartTime?: number;
    renderMemberType?: number;
  }

  /**
   * What a message holds; `object_value` of the page's address and `handleHostMessage` bring one from the application.
   * Bytes are Base64.
   */
  interface MessageBody {
    msgType?: number;
    mediaUrl?: string;
    /** Seconds. */
    duration?: number;
    width?: number;
    height?: number;
    content?: string;
    /** Bytes. */
    image?: string;
    name?: string;
    voiceLocalPath?: string;
    /** Bytes. */
    annexLocalData?: string;
    annexLocalPath?: string;
    contentType?: string;
    fileName?: string;
    /** Size in bytes. */
    fileSize?: number;
    videoLocalPath?: string;
    /** Bytes. */
    videoCoverImage?: string;
    coverUrl?: string;
    videoName?: string;
    linkUrl?: string;
    title?: string;
    link_description?: string;
    openMethod?: number;
    imageUrl?: string;
    url?: string;
    button?: string;
    cardType?: number;
    cardGuide?: string;
    cardDesc?: string;
    cardImg?: string;
    cardLink?: string;
    customFields?: CardField[];
    customItems?: CardItem[];
    customMenus?: CardMenu[];
    businessProps?: Record<string, string>;
  }

  interface CardField {
    key?: string;
    value?: string;
  }

  interface CardMenu {
    type?: number;
    title?: string;
    command?: string;
    visible?: string[];
  }

  interface CardItem {
    customMenus?: CardMenu[];
    customFields?: CardField[];
    customCardDesc?: string;
    customCardLink?: string;
    customCardName?: string;
    customCardAmount?: string;
    customCardThumbnail?: string;
    customCardAmountSymbol?: string;
    customCardAmountName?: string;
    customCardOriginalAmount?: string;
    cellHeight?: number;
    isWrap?: boolean;
  }

  type Handlers<Bodies> = {
    readonly [Name in keyof Bodies]: { postMessage(body: Bodies[Name]): void };
  };
}

interface Window {
  /** Absent in a plain browser and in frames. */
  readonly webkit?: { readonly messageHandlers?: Orivex.Handlers<Orivex.Messages> & Partial<Orivex.Handlers<Orivex.OptionalMessages>> };
  /** There before the page's first script; absent in a plain browser and in frames. */
  readonly extraParams?: Orivex.Environment;
  /** The page's: takes what the visitor has picked or shot. */
  handleSelectedFiles?: (files: Orivex.SelectedFile[]) => void;
  /** The page's: takes a voice clip. */
  handleSelectedRecord?: (record: Orivex.SelectedRecord) => void;
  /** The page's, if it likes: takes what the application brings while the chat shows. */
  handleHostMessage?: (body: Orivex.MessageBody) => void;
}
