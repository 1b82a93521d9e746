// Plays the songs of songs.js one after the other, with a pause between them, and puts the name of each into
// the title of the page with its first sound. "?seconds=20" plays so many seconds of each.
'use strict';

const pauseMs = 1500;
const limit = Number(new URLSearchParams(location.search).get('seconds')) || Infinity;
const byId = (id) => document.getElementById(id);
const sound = byId('sound');
let present = -1;
let waiting = 0;

const show = () => {
  const song = songs[present];
  byId('song').innerText = song.title;
  byId('artist').innerText = song.artist;
  byId('album').innerText = song.album;
  byId('cover').style.background =
      `conic-gradient(from ${present * 30}deg, hsl(${present * 47} 60% 45%), hsl(${present * 47 + 60} 60% 55%), ` +
      `hsl(${present * 47} 60% 45%))`;
  document.title = `${song.artist} - ${song.title} | Demo station`;
  if (navigator.mediaSession) {
    navigator.mediaSession.metadata =
        new MediaMetadata({artist: song.artist, title: song.title, album: song.album});
  }
};

const begin = () => {
  clearTimeout(waiting);
  present = (present + 1) % songs.length;
  sound.src = songs[present].address;
  sound.play().catch(() => { byId('play').innerText = 'Play'; });
};

const pause = () => {
  clearTimeout(waiting);
  sound.pause();
  waiting = setTimeout(begin, pauseMs);
};

sound.addEventListener('playing', () => {
  byId('play').innerText = 'Pause';
  show();
});
sound.addEventListener('pause', () => { byId('play').innerText = 'Play'; });
sound.addEventListener('ended', pause);
sound.addEventListener('timeupdate', () => {
  if (sound.currentTime >= limit && !sound.paused) pause();
});
byId('play').addEventListener('click', () => {
  clearTimeout(waiting);
  if (present < 0) begin();
  else if (sound.paused) sound.play();
  else sound.pause();
});
byId('next').addEventListener('click', begin);
begin();
