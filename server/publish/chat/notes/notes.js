"use strict";

const storageKey = "corvane-notes";
const cookieName = "corvane_notes_visits";
const mostNotes = 500;

function readNotes() {
    try {
        const notes = JSON.parse(localStorage.getItem(storageKey));
        return Array.isArray(notes) ? notes.filter((note) => note && typeof note.text === "string") : [];
    } catch (error) {
        return [];
    }
}

function writeNotes(notes) {
    try {
        localStorage.setItem(storageKey, JSON.stringify(notes.slice(-mostNotes)));
        return true;
    } catch (error) {
        return false;
    }
}

function timeText(milliseconds) {
    const time = new Date(milliseconds);
    return isNaN(time) ? "" : time.toLocaleString("en-GB", { dateStyle: "medium", timeStyle: "short" });
}

function showNotes() {
    log.replaceChildren();
    const notes = readNotes();
    addMessage(notes.length === 0
        ? "Nothing noted yet. What you keep here is still here when you come back."
        : "Welcome back. You have kept " + notes.length + (notes.length === 1 ? " note." : " notes."), false);
    for (const note of notes) {
        addMessage(note.text, true, timeText(note.time));
    }
    log.scrollTop = log.scrollHeight;
}

// A cookie counts the visits, so that both kinds of storage can be seen to survive a restart.
function countVisit() {
    const found = document.cookie.split("; ").find((item) => item.startsWith(cookieName + "="));
    const visits = (Number.parseInt((found || "=0").split("=")[1], 10) || 0) + 1;
    document.cookie = cookieName + "=" + visits + "; Max-Age=31536000; Path=/chat/notes/; SameSite=Lax";
    document.getElementById("visits").textContent = visits === 1
        ? "Your first visit. What you write stays in this window."
        : "Visit number " + visits + ". What you write stays in this window.";
}

onSend((text) => {
    const note = { text: text, time: Date.now() };
    const isKept = writeNotes([...readNotes(), note]);
    addMessage(text, true, isKept ? timeText(note.time) : "not kept: the storage is full or switched off");
});

document.getElementById("clear").addEventListener("click", () => {
    if (confirm("Remove all notes?")) {
        writeNotes([]);
        showNotes();
    }
    field.focus();
});

// Another window of the same page may have added a note.
addEventListener("storage", (event) => {
    if (event.key === storageKey) {
        showNotes();
    }
});

countVisit();
showNotes();
